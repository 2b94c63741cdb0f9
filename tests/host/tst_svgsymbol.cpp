#include "host/shapes/shapeproperty.h"
#include "host/shapes/svgdrawing.h"
#include "host/shapes/svgsymbol.h"
#include "tests/support/drawnshape.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

// A black square all over; state 0 has a red one in the upper left quarter, state 1 a blue one in the lower right.
const char states[] =
    "<?xml version='1.0'?>"
    "<!DOCTYPE svg PUBLIC '-//W3C//DTD SVG 1.1//EN' 'http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd'>"
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' viewBox='0 0 10 10'>"
    "<defs><rect id='quarter' width='5' height='5'/></defs>"
    "<rect width='10' height='10' fill='#000000'/>"
    "<g id='state0'><use xlink:href='#quarter' fill='#ff0000'/></g>"
    "<g id='state1'><rect x='5' y='5' width='5' height='5' fill='#0000ff'/></g>"
    "</svg>";

} // namespace

class tst_SvgSymbol : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    void write(const char* name, const QByteArray& content)
    {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    /// The picture without the margin.
    static QImage picture(const QString& source, int state = 0, QSizeF size = {40, 40})
    {
        SvgSymbol symbol;
        symbol.setPlace({QPointF(), size});
        symbol.setNamedProperty(QStringLiteral("Source"), source);
        symbol.setNamedProperty(QStringLiteral("State"), state);
        return drawn(symbol, 1, nullptr, 0).copy(4, 4, int(size.width()), int(size.height()));
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_folder.isValid());
        write("states.svg", states);
        write("pumps/states.svg", states);
        write("broken.svg", "<svg viewBox='0 0 1 1'><g></svg");
        write("odd.svg", "<svg viewBox='0 0 1 1'><rect width='1' height='1' fill='url(#nowhere)'/><tspan/>"
                         "<path d='M nonsense'/><image xlink:href='nowhere.png' width='1' height='1'/></svg>");
        write("text.svg", "no markup at all");
        write("empty.svg", "");
        write("other.svg", "<html><body/></html>");
        SvgSymbol::setSearchPaths({m_folder.filePath(QStringLiteral("none")), m_folder.path()});
    }

    void showsTheElementOfItsState()
    {
        const QRgb black = qRgb(0, 0, 0);
        const QImage first = picture(QStringLiteral("states.svg"), 0);
        QCOMPARE(first.pixel(10, 10), qRgb(255, 0, 0));
        QCOMPARE(first.pixel(30, 30), black);
        const QImage second = picture(QStringLiteral("states.svg"), 1);
        QCOMPARE(second.pixel(10, 10), black);
        QCOMPARE(second.pixel(30, 30), qRgb(0, 0, 255));
        const QImage unknown = picture(QStringLiteral("states.svg"), 2);
        QCOMPARE(unknown.pixel(10, 10), black);
        QCOMPARE(unknown.pixel(30, 30), black);
    }

    void keepsItsProportions()
    {
        const QImage wide = picture(QStringLiteral("states.svg"), 0, {80, 40});
        QCOMPARE(inkOf(wide), QRect(20, 0, 40, 40));
    }

    void filesAreFoundBelowTheSearchPaths()
    {
        const QImage wanted = picture(QStringLiteral("states.svg"));
        QCOMPARE(picture(QStringLiteral("pumps/states.svg")), wanted);
        QCOMPARE(picture(QStringLiteral("pumps/../states.svg")), wanted);

        const QString folder = m_folder.filePath(QStringLiteral("pumps"));
        SvgSymbol::setSearchPaths({folder});
        QCOMPARE(SvgSymbol::searchPaths(), QStringList(folder));
        QCOMPARE(picture(QStringLiteral("states.svg")), wanted);
        QVERIFY(picture(QStringLiteral("../states.svg")) != wanted);
        QVERIFY(picture(m_folder.filePath(QStringLiteral("states.svg"))) != wanted);
    }

    void whatCantBeShownIsABoxThatSaysWhich_data()
    {
        QTest::addColumn<QString>("source");
        for (const char* name : {"missing.svg", "broken.svg", "text.svg", "empty.svg", "other.svg", "pumps", ""})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void whatCantBeShownIsABoxThatSaysWhich()
    {
        QFETCH(QString, source);
        const QImage box = picture(source);
        int red = 0;
        for (int x = 0; x < box.width(); ++x)
            red += qRed(box.pixel(x, 0)) > 150 && qGreen(box.pixel(x, 0)) < 120 ? 1 : 0;
        QVERIFY(red > 10); // of the dashed outline
    }

    // Qt's warnings fail the test.
    void oddDrawingsAreShownWithoutAWord() { QVERIFY(!picture(QStringLiteral("odd.svg")).isNull()); }

    void aFileIsReadOnceForAll()
    {
        const QString path = m_folder.filePath(QStringLiteral("states.svg"));
        const std::shared_ptr<SvgDrawing> one = SvgDrawing::of(path, 0);
        QVERIFY(one);
        QCOMPARE(SvgDrawing::of(path, 0), one);
        QVERIFY(SvgDrawing::of(path, 1) != one);
        SvgDrawing::forgetAll();
        QVERIFY(SvgDrawing::of(path, 0) != one);
    }

    void aChangedFileShowsOnceThePathsAreSetAgain()
    {
        const QImage before = picture(QStringLiteral("states.svg"));
        write("states.svg", "<svg viewBox='0 0 1 1'><rect width='1' height='1' fill='#00ff00'/></svg>");
        QCOMPARE(picture(QStringLiteral("states.svg")), before);
        SvgSymbol::setSearchPaths({m_folder.path()});
        QCOMPARE(picture(QStringLiteral("states.svg")).pixel(20, 20), qRgb(0, 255, 0));
    }

    void nothingReachesBeyondTheGeometry()
    {
        write("states.svg", "<svg viewBox='0 0 1 1'><rect x='-9' y='-9' width='99' height='99'/></svg>");
        SvgSymbol symbol;
        QVERIFY(symbol.setNamedProperty(QStringLiteral("Source"), QStringLiteral("states.svg")));
        QCOMPARE(inkOf(drawn(symbol)), QRect(44, 44, 64, 64));
    }
};

QTEST_MAIN(tst_SvgSymbol)
#include "tst_svgsymbol.moc"
