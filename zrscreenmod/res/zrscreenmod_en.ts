<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>ZRScreenMod</name>
    <message>
        <source>撤销(&amp;U)</source>
        <translation>&amp;Undo</translation>
    </message>
    <message>
        <source>重做(&amp;R)</source>
        <translation>&amp;Redo</translation>
    </message>
    <message>
        <source>剪切(&amp;T)</source>
        <translation>Cu&amp;t</translation>
    </message>
    <message>
        <source>复制(&amp;C)</source>
        <translation>&amp;Copy</translation>
    </message>
    <message>
        <source>复制链接地址(&amp;L)</source>
        <translation>Copy &amp;Link Address</translation>
    </message>
    <message>
        <source>粘贴(&amp;P)</source>
        <translation>&amp;Paste</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Select All</translation>
    </message>
    <message>
        <source>一</source>
        <translation>Mo</translation>
    </message>
    <message>
        <source>二</source>
        <translation>Tu</translation>
    </message>
    <message>
        <source>三</source>
        <translation>We</translation>
    </message>
    <message>
        <source>四</source>
        <translation>Th</translation>
    </message>
    <message>
        <source>五</source>
        <translation>Fr</translation>
    </message>
    <message>
        <source>六</source>
        <translation>Sa</translation>
    </message>
    <message>
        <source>日</source>
        <translation>Su</translation>
    </message>
    <message>
        <source>小时</source>
        <translation>Hour</translation>
    </message>
    <message>
        <source>分钟</source>
        <translation>Min</translation>
    </message>
    <message>
        <source>清空</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>现在</source>
        <translation>Now</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>%1年 %2月</source>
        <translation>%2/%1</translation>
    </message>
    <message>
        <source>演讲者</source>
        <translation>Speaker</translation>
    </message>
    <message>
        <source>精简</source>
        <translation>Compact</translation>
    </message>
    <message>
        <source>视频</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>模式三</source>
        <translation>Mode 3</translation>
    </message>
    <message>
        <source>正在讲话：</source>
        <translation>Speaking: </translation>
    </message>
    <message>
        <source>字幕</source>
        <translation>Subtitles</translation>
    </message>
    <message>
        <source> 暂停了屏幕共享</source>
        <translation> has paused sharing</translation>
    </message>
    <message>
        <source>主持人</source>
        <translation>Host</translation>
    </message>
    <message>
        <source>管理员</source>
        <translation>Admin</translation>
    </message>
    <message>
        <source>全员看TA</source>
        <translation>Pinned for all</translation>
    </message>
    <message>
        <source>锁定看TA</source>
        <translation>Pinned</translation>
    </message>
    <message>
        <source>(我)</source>
        <translation> (me)</translation>
    </message>
    <message>
        <source>发起的共享</source>
        <translation>&apos;s screen</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>paused</translation>
    </message>
    <message>
        <source>麦克风已静音</source>
        <translation>microphone off</translation>
    </message>
    <message>
        <source>麦克风已打开</source>
        <translation>microphone on</translation>
    </message>
    <message>
        <source>摄像头已打开</source>
        <translation>camera on</translation>
    </message>
    <message>
        <source>摄像头已关闭</source>
        <translation>camera off</translation>
    </message>
    <message>
        <source>已举手</source>
        <translation>hand raised</translation>
    </message>
    <message>
        <source>正在发言</source>
        <translation>speaking</translation>
    </message>
    <message>
        <source>网络不佳</source>
        <translation>weak network</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
    <message>
        <source>麦克风</source>
        <translation>Microphone</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>More</translation>
    </message>
    <message>
        <source>放下手</source>
        <translation>Lower hand</translation>
    </message>
</context>
</TS>
