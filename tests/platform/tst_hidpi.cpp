#include "platform/ui/hidpi.h"

#include <QFile>
#include <QProxyStyle>
#include <QScreen>
#include <QTemporaryDir>
#include <QWidget>
#include <QtTest>

#include <cmath>

namespace {

/// A style whose tool buttons show icons of a size of its own.
class LargeIcons : public QProxyStyle
{
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        return metric == PM_ButtonIconSize ? 22 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

double linear(int component)
{
    const double c = component / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

/// Relative luminance and contrast as WCAG 2.1 defines them.
double luminance(const QColor& colour)
{
    return 0.2126 * linear(colour.red()) + 0.7152 * linear(colour.green()) + 0.0722 * linear(colour.blue());
}
double contrast(const QColor& a, const QColor& b)
{
    const double darker = std::min(luminance(a), luminance(b));
    return (std::max(luminance(a), luminance(b)) + 0.05) / (darker + 0.05);
}

/// The factor that the test was started with: it runs at 1 and at 2.
double scaleFactor()
{
    return qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble();
}

QString path(const QString& name)
{
    return QStringLiteral(":/KVC/image/") + name;
}

} // namespace

class tst_HiDPI : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Before anything else has called the library.
    void theIconsAreThereOnceTheLibraryIsLoaded()
    {
        for (const char* name : {"plus", "execute", "tag", "folder-open", "find"})
            QVERIFY2(QFile::exists(path(QLatin1String(name))), name);
    }

    void everyIconHasTheSizeAndRatio_data() { icons(); }
    void everyIconHasTheSizeAndRatio()
    {
        QFETCH(QString, name);
        const int side = QApplication::style()->pixelMetric(QStyle::PM_ButtonIconSize);
        const QWidget widget;
        for (const QWidget* shownOn : {static_cast<const QWidget*>(nullptr), &widget}) {
            const QPixmap picture = HiDPI::dpiScaledPixmap(path(name), shownOn);
            QCOMPARE(picture.devicePixelRatio(), scaleFactor());
            QCOMPARE(picture.size(), QSize(side, side) * scaleFactor());
        }
    }

    void everyIconStandsOutOnLightAndDark_data() { icons(); }
    void everyIconStandsOutOnLightAndDark()
    {
        QFETCH(QString, name);
        const QImage picture = HiDPI::dpiScaledPixmap(path(name), nullptr).toImage();
        int drawn = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor colour = picture.pixelColor(x, y);
                if (colour.alpha() < 250)
                    continue;
                ++drawn;
                QVERIFY(contrast(colour, QColor(0xef, 0xef, 0xef)) >= 3);
                QVERIFY(contrast(colour, QColor(0x35, 0x35, 0x35)) >= 3);
            }
        }
        // Lines, that is: neither next to nothing nor a block.
        const int pixels = picture.width() * picture.height();
        QVERIFY2(drawn > pixels / 10 && drawn < pixels / 2, qPrintable(QString::number(drawn)));
        QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
    }

    void noTwoIconsAreAlike()
    {
        QVector<QImage> pictures;
        for (const char* name : {"plus", "execute", "tag", "folder-open", "find"}) {
            const QImage picture = HiDPI::dpiScaledPixmap(path(QLatin1String(name)), nullptr).toImage();
            QVERIFY2(!pictures.contains(picture), name);
            pictures.append(picture);
        }
    }

    void aPlusIsSharp()
    {
        const QPixmap picture = HiDPI::dpiScaledPixmap(path(QStringLiteral("plus")), nullptr);
        const int middle = picture.width() / 2;
        const QColor colour(0x2e, 0x88, 0xd0);
        const int line = int(scaleFactor()); // half the line's width
        for (int x = middle - line; x < middle + line; ++x)
            QCOMPARE(picture.toImage().pixelColor(x, picture.height() / 4), colour);
        for (const int x : {middle - line - 1, middle + line})
            QCOMPARE(picture.toImage().pixelColor(x, picture.height() / 4).alpha(), 0);
    }

    void theWidgetsStyleDecidesTheSize()
    {
        QWidget widget;
        LargeIcons style;
        widget.setStyle(&style);
        const QPixmap picture = HiDPI::dpiScaledPixmap(path(QStringLiteral("find")), &widget);
        QCOMPARE(picture.size(), QSize(22, 22) * scaleFactor());
    }

    void aWidePictureKeepsItsProportions()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("wide.svg")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 10'>"
                   "<rect width='20' height='10' fill='#000'/></svg>");
        file.close();
        const QImage picture = HiDPI::dpiScaledPixmap(file.fileName(), nullptr).toImage();
        QCOMPARE(picture.pixelColor(picture.width() / 2, picture.height() / 8).alpha(), 0);
        QCOMPARE(picture.pixelColor(picture.width() / 2, picture.height() / 2).alpha(), 255);
        QCOMPARE(picture.pixelColor(picture.width() / 2, picture.height() * 7 / 8).alpha(), 0);
    }

    void whatIsNotThereGivesNone_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no such icon") << path(QStringLiteral("minus"));
        QTest::newRow("names have no suffix") << path(QStringLiteral("plus.svg"));
        QTest::newRow("a folder") << QStringLiteral(":/KVC/image");
        QTest::newRow("no path") << QString();
    }
    void whatIsNotThereGivesNone()
    {
        QFETCH(QString, name);
        QVERIFY(HiDPI::dpiScaledPixmap(name, nullptr).isNull());
    }

    void aFileThatIsNoPictureGivesNone()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("text.svg")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no picture");
        file.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("Cannot read file .*text\\.svg")));
        QVERIFY(HiDPI::dpiScaledPixmap(file.fileName(), nullptr).isNull());
    }

private:
    static void icons()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"plus", "execute", "tag", "folder-open", "find"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
};

QTEST_MAIN(tst_HiDPI)
#include "tst_hidpi.moc"
