#include "qdlgtextedit.h"

#include "qmytextedit.h"
#include "qzrscreenconfig.h"

#include <QCloseEvent>
#include <QVBoxLayout>

namespace {

constexpr int kFontSizePx = 20; // scaled on a high-resolution screen

} // namespace

QDlgTextEdit::QDlgTextEdit(const QColor& background)
    : QDialog(nullptr, Qt::Dialog | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("QDlgTextEdit"));
    setStyleSheet(QStringLiteral("#QDlgTextEdit{background-color: rgb(32, 36, 44);}"));
    m_pTextEdit = new QMyTextEdit(this);
    m_pTextEdit->setObjectName(QStringLiteral("textEdit"));
    QFont font = m_pTextEdit->font();
    font.setFamily(QStringLiteral("微软雅黑"));
    m_pTextEdit->setFont(font);
    m_pTextEdit->setStyleSheet(
        QStringLiteral("QTextEdit {background-color: rgb(%1,%2,%3);border-style:none;"
                       "border-width:0;font-family:Microsoft YaHei;font-size:%4px;"
                       "color:rgb(189,189,189);}")
            .arg(background.red())
            .arg(background.green())
            .arg(background.blue())
            .arg(QZRScreenConfig::getInstance()->scaled(kFontSizePx)));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetNoConstraint); // the host decides on the size
    layout->addWidget(m_pTextEdit);
}

void QDlgTextEdit::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
