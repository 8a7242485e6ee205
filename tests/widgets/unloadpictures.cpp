// The library's pictures come and go with the library. A program of its own, which has no other
// copy of them: in a host that uses Qt, pictures of an unloaded library would be read from memory
// that is gone.
#include <QFile>
#include <QImage>
#include <QLibrary>
#include <QTemporaryDir>
#include <QtTest>

class TestUnload : public QObject
{
    Q_OBJECT

private slots:
    void picturesComeAndGoWithTheLibrary()
    {
        // Qt warns where the session has no such folder.
        const QTemporaryDir runtimeDir;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDir.path()));
        const QString picture = QStringLiteral(":/pic4k/pageNext.png");
        QLibrary library(QStringLiteral(ZR_LIBRARY));
        for (int round = 0; round < 2; ++round) {
            QVERIFY(!QFile::exists(picture));
            QVERIFY2(library.load(), qPrintable(library.errorString()));
            QCOMPARE(QImage(picture).size(), QSize(96, 96));
            QVERIFY(library.unload());
        }
        QVERIFY(!QFile::exists(picture));
    }
};

QTEST_APPLESS_MAIN(TestUnload)
#include "unloadpictures.moc"
