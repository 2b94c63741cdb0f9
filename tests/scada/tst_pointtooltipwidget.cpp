#include "scada/widgets/pointtooltipwidget.h"

#include "tests/support/markingtranslator.h"
#include "tests/support/offscreenwarnings.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleHintReturnMask>
#include <QStyleOptionFrame>
#include <QTextDocument>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QtTest>

#include <memory>
#include <optional>

namespace {

/// A style whose tips have a wide frame, a red panel and, when told so, a mask, and are a fifth opaque.
class TipStyle : public QProxyStyle
{
public:
    TipStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        return metric == PM_ToolTipLabelFrameWidth ? 6 : QProxyStyle::pixelMetric(metric, option, widget);
    }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override
    {
        if (hint == SH_ToolTipLabel_Opacity)
            return 51;
        if (hint != SH_ToolTip_Mask)
            return QProxyStyle::styleHint(hint, option, widget, result);
        if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(result))
            mask->region = QRegion(maskOf(option->rect));
        return isMasked ? 1 : 0;
    }
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        if (element != PE_PanelTipLabel)
            return QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (qstyleoption_cast<const QStyleOptionFrame*>(option))
            painter->fillRect(option->rect, Qt::red);
    }

    static QRect maskOf(const QRect& rect) { return rect.adjusted(3, 0, 0, 0); }

    bool isMasked = false;
};

QSize marginOfText(const PointToolTipWidget& tip)
{
    const QFontMetrics metrics(tip.font());
    return {1, metrics.descent() == 2 && metrics.ascent() >= 11 ? 1 : 0};
}

QRect screen()
{
    return QGuiApplication::primaryScreen()->geometry();
}

} // namespace

class tst_PointToolTipWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        m_style = new TipStyle; // the application's from here on
        QApplication::setStyle(m_style);
        QCOMPARE(screen(), QRect(0, 0, 800, 600)); // the tables stand on it
    }
    void init()
    {
        m_style->isMasked = false;
        m_window = std::make_unique<QWidget>();
        auto* rows = new QVBoxLayout(m_window.get());
        for (QLineEdit*& edit : m_edits) {
            edit = new QLineEdit;
            rows->addWidget(edit);
        }
        m_window->show();
        m_window->activateWindow();
        m_edits[0]->setFocus();
        QTRY_VERIFY(m_edits[0]->hasFocus());
    }
    void cleanup() { m_window.reset(); }

    void aTipLooksLikeThePlatforms()
    {
        QPalette green;
        green.setColor(QPalette::ToolTipBase, Qt::green);
        const QPalette before = QToolTip::palette();
        QToolTip::setPalette(green);
        const PointToolTipWidget tip(m_window.get());
        QToolTip::setPalette(before);

        QCOMPARE(tip.parentWidget(), m_window.get());
        QCOMPARE(tip.windowType(), Qt::ToolTip);
        QVERIFY(tip.windowFlags() & Qt::BypassGraphicsProxyWidget);
        QCOMPARE(tip.styleSheet(), QString());
        QCOMPARE(tip.foregroundRole(), QPalette::ToolTipText);
        QCOMPARE(tip.backgroundRole(), QPalette::ToolTipBase);
        QCOMPARE(tip.palette().color(QPalette::ToolTipBase), QColor(Qt::green));
        QVERIFY(tip.testAttribute(Qt::WA_WState_Polished));
        QCOMPARE(tip.margin(), 7);
        QCOMPARE(tip.frameStyle(), int(QFrame::NoFrame));
        QCOMPARE(tip.alignment(), Qt::AlignLeft);
        QCOMPARE(tip.indent(), 1);
        QCOMPARE(tip.windowOpacity(), 0.2);
        QVERIFY(tip.hasMouseTracking());
        QVERIFY(!tip.isVisible());
    }

    void itHasNoSignalsOrSlotsOfItsOwn()
    {
        const QMetaObject& meta = PointToolTipWidget::staticMetaObject;
        QCOMPARE(meta.methodCount(), meta.methodOffset());
        QCOMPARE(meta.superClass(), &QLabel::staticMetaObject);
    }

    void aTipForOnePoint()
    {
        const PointToolTipWidget* tip = PointToolTipWidget::showTip(
            QStringLiteral("P1.FLOW"), QStringLiteral("Flow behind pump 1"), QPointF(99.5, 100.4), m_window.get());
        QVERIFY(tip->isVisible());
        QCOMPARE(tip->text(), QStringLiteral("Name: P1.FLOW\nDiscription: Flow behind pump 1")); // kept: spelled so
        QCOMPARE(tip->parentWidget(), m_window.get());
        QCOMPARE(tip->objectName(), QStringLiteral("qtooltip_label"));
        QVERIFY(tip->testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(tip->pos(), QPoint(102, 116)); // (100, 100), rounded
        QCOMPARE(tip->size(), tip->sizeHint() + marginOfText(*tip));
        QVERIFY(!tip->wordWrap());
    }

    void anEmptyDescriptionHasNoLine()
    {
        const PointToolTipWidget* tip =
            PointToolTipWidget::showTip(QStringLiteral("P1.FLOW"), QString(), QPointF(), m_window.get());
        QCOMPARE(tip->text(), QStringLiteral("Name: P1.FLOW"));
        tip = PointToolTipWidget::showTip(QString(), QStringLiteral(" "), QPointF(), m_window.get());
        QCOMPARE(tip->text(), QStringLiteral("Name: \nDiscription:  "));
    }

    void aTipForSeveralPoints()
    {
        const QPair<QString, QString> flow(QStringLiteral("FLOW"), QStringLiteral("Flow"));
        const PointToolTipWidget* tip = PointToolTipWidget::showTip({flow, flow}, QPointF(39.5, 30.4), m_window.get());
        QVERIFY(tip->isVisible());
        QCOMPARE(tip->parentWidget(), m_window.get());
        QCOMPARE(tip->objectName(), QStringLiteral("qtooltip_label"));
        QVERIFY(tip->testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(tip->pos(), QPoint(42, 46)); // (40, 30), rounded
        QCOMPARE(tip->size(), tip->sizeHint() + marginOfText(*tip));
        QVERIFY(!tip->wordWrap());
    }

    void aTipForSeveralPointsNamesThemOnly()
    {
        using Points = QList<QPair<QString, QString>>;
        const auto textOf = [this](const Points& points) {
            const PointToolTipWidget* tip = PointToolTipWidget::showTip(points, QPointF(40, 30), m_window.get());
            return tip->isVisible() ? tip->text() : QStringLiteral("not shown");
        };
        const QPair<QString, QString> flow(QStringLiteral("FLOW"), QStringLiteral("Flow"));
        const QPair<QString, QString> none;
        QCOMPARE(textOf({flow}), QStringLiteral("Name: FLOW"));
        QCOMPARE(textOf({flow, none, flow}), QStringLiteral("Name: FLOW\nName: \nName: FLOW"));
        QCOMPARE(textOf({}), QString());
    }

    void theTextsAreLookedUpUnderTheClass()
    {
        const MarkingTranslator translator;
        const PointToolTipWidget* tip =
            PointToolTipWidget::showTip(QStringLiteral("a"), QStringLiteral("b"), QPointF(), m_window.get());
        QCOMPARE(tip->text(), QStringLiteral("PointToolTipWidget::Name: a\nPointToolTipWidget::Discription: b"));
        QCOMPARE(translatedFromUtf8<PointToolTipWidget>("x"), QStringLiteral("PointToolTipWidget::x"));
    }

    void richTextWrapsWords()
    {
        const PointToolTipWidget* tip =
            PointToolTipWidget::showTip(QStringLiteral("<b>FLOW</b>"), QString(), QPointF(), m_window.get());
        QVERIFY(tip->wordWrap());
        PointToolTipWidget other;
        other.reuseTip(QStringLiteral("<b>FLOW</b>"));
        QVERIFY(other.wordWrap());
        other.reuseTip(QStringLiteral("a < b"));
        QVERIFY(!other.wordWrap());
        QCOMPARE(other.text(), QStringLiteral("a < b"));
    }

    void aTipThatIsReusedFitsItsText()
    {
        PointToolTipWidget tip;
        tip.reuseTip(QStringLiteral("a longer text than the next"));
        QCOMPARE(tip.size(), tip.sizeHint() + marginOfText(tip));
        const int width = tip.width();
        tip.reuseTip(QStringLiteral("text"));
        QCOMPARE(tip.size(), tip.sizeHint() + marginOfText(tip));
        QVERIFY(tip.width() < width);
        QVERIFY(!tip.isVisible());
    }

    void aLowFontGetsALineMore_data()
    {
        QTest::addColumn<int>("leastAscent");
        QTest::addColumn<int>("mostAscent");
        QTest::addColumn<QSize>("margin");
        QTest::newRow("when it is tall enough") << 11 << 100 << QSize(1, 1);
        QTest::newRow("but not a small one") << 1 << 10 << QSize(1, 0);
    }
    void aLowFontGetsALineMore()
    {
        QFETCH(int, leastAscent);
        QFETCH(int, mostAscent);
        QFETCH(QSize, margin);
        const std::optional<QFont> low = lowFont(leastAscent, mostAscent);
        if (!low)
            QSKIP("no font here has a descent of 2 and such an ascent");
        PointToolTipWidget tip;
        tip.setFont(*low);
        tip.reuseTip(QStringLiteral("text"));
        QCOMPARE(tip.size(), tip.sizeHint() + margin);
    }

    void showingATextDoesNotShowTheTip()
    {
        PointToolTipWidget tip;
        tip.showText(QPoint(10, 10), QStringLiteral("text"), m_window.get());
        QCOMPARE(tip.text(), QStringLiteral("text"));
        QCOMPARE(tip.pos(), QPoint(12, 26));
        QCOMPARE(tip.objectName(), QStringLiteral("qtooltip_label"));
        QCOMPARE(tip.size(), tip.sizeHint() + marginOfText(tip));
        QVERIFY(!tip.isVisible());
    }

    void placesOnTheScreen_data() // of 800 by 600
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("pos");
        QTest::addColumn<QPoint>("place");
        const QSize size(100, 40);
        QTest::newRow("below and to the right") << size << QPoint(100, 100) << QPoint(102, 116);
        QTest::newRow("just inside the right edge") << size << QPoint(698, 100) << QPoint(700, 116);
        QTest::newRow("a pixel further, to the left") << size << QPoint(699, 100) << QPoint(597, 116);
        QTest::newRow("just inside the lower edge") << size << QPoint(100, 544) << QPoint(102, 560);
        QTest::newRow("a pixel further, above") << size << QPoint(100, 545) << QPoint(102, 497);
        QTest::newRow("the lower right corner") << size << QPoint(799, 599) << QPoint(697, 551);
        QTest::newRow("above the screen") << size << QPoint(100, -50) << QPoint(102, 0);
        QTest::newRow("the upper edge") << size << QPoint(100, -16) << QPoint(102, 0);
        QTest::newRow("left of the screen") << size << QPoint(-100, 100) << QPoint(0, 116);
        QTest::newRow("far to the right") << size << QPoint(2000, 100) << QPoint(700, 116);
        QTest::newRow("far below") << size << QPoint(100, 1000) << QPoint(102, 560);
        QTest::newRow("too wide for the left side") << QSize(500, 40) << QPoint(400, 100) << QPoint(0, 116);
        QTest::newRow("too high for the upper side") << QSize(100, 400) << QPoint(100, 300) << QPoint(102, 0);
        QTest::newRow("wider than the screen: its beginning shows")
            << QSize(900, 40) << QPoint(100, 100) << QPoint(0, 116);
        QTest::newRow("higher than the screen: its end shows")
            << QSize(100, 700) << QPoint(100, 100) << QPoint(102, -100);
        QTest::newRow("as large as the screen") << QSize(800, 600) << QPoint(0, 0) << QPoint(0, 0);
    }
    void placesOnTheScreen()
    {
        QFETCH(QSize, size);
        QFETCH(QPoint, pos);
        QFETCH(QPoint, place);
        PointToolTipWidget tip;
        tip.resize(size);
        tip.placeTip(pos, m_window.get());
        QCOMPARE(tip.pos(), place);
        QCOMPARE(tip.size(), size);
    }

    void withOneScreenItIsThat()
    {
        PointToolTipWidget tip;
        QCOMPARE(tip.getTipScreen(QPoint(100, 100), m_window.get()), 0);
        QCOMPARE(tip.getTipScreen(QPoint(5000, -5000), nullptr), 0);
    }

    void everyTipStaysUntilTheNextEventThatEndsTips()
    {
        const QPointer<PointToolTipWidget> first = makeTip();
        const QPointer<PointToolTipWidget> second = makeTip();
        QCoreApplication::processEvents();
        QVERIFY(first && first->isVisible() && second && second->isVisible());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(m_edits[1], &leave);
        QVERIFY(!first->isVisible() && !second->isVisible());
        QTRY_VERIFY(!first && !second);
    }

    void theseEventsAloneEndTips()
    {
        const QList<int> ending = {QEvent::FocusIn,        QEvent::FocusOut,         QEvent::Leave,
                                   QEvent::WindowActivate, QEvent::WindowDeactivate, QEvent::Wheel};
        QCOMPARE(ending, QList<int>({8, 9, 11, 24, 25, 31}));
        QObject anything;
        PointToolTipWidget tip;
        for (int type = 1; type <= QEvent::User; ++type) {
            tip.show();
            QEvent event{QEvent::Type(type)};
            QVERIFY(!tip.eventFilter(&anything, &event)); // consumes nothing
            QVERIFY2(tip.isVisible() != ending.contains(type), qPrintable(QString::number(type)));
        }
    }

    void anyObjectsEventEndsATip()
    {
        QObject anything;
        const QPointer<PointToolTipWidget> tip = makeTip();
        QEvent activate(QEvent::WindowActivate);
        QCoreApplication::sendEvent(&anything, &activate);
        QTRY_VERIFY(!tip);
    }

    void theFocusEndsATip()
    {
        const QPointer<PointToolTipWidget> tip = makeTip();
        m_edits[1]->setFocus();
        QVERIFY(m_edits[1]->hasFocus());
        QTRY_VERIFY(!tip);
    }

    void theWheelEndsATipAndTurns()
    {
        const QPointer<PointToolTipWidget> tip = makeTip();
        struct : QWidget
        {
            void wheelEvent(QWheelEvent* event) override
            {
                ++turns;
                event->accept();
            }
            int turns = 0;
        } turned;
        QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&turned, &wheel);
        QCOMPARE(turned.turns, 1);
        QTRY_VERIFY(!tip);
    }

    void anotherWindowEndsATip()
    {
        const QPointer<PointToolTipWidget> tip = makeTip();
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!tip);
    }

    void keysAndButtonsAndMovesDoNot()
    {
        const QPointer<PointToolTipWidget> tip = makeTip();
        QTest::keyClicks(m_edits[0], QStringLiteral("text"));
        QTest::mouseMove(m_edits[0], QPoint(3, 3));
        QTest::mouseClick(m_edits[0], Qt::LeftButton);
        QTest::mouseMove(m_edits[0], QPoint(9, 5));
        QCoreApplication::processEvents();
        QCOMPARE(m_edits[0]->text(), QStringLiteral("text"));
        QVERIFY(tip && tip->isVisible());
    }

    void aTipGoesWithItsParent()
    {
        const QPointer<PointToolTipWidget> tip = makeTip();
        m_window.reset();
        QVERIFY(!tip);
    }

    void aTipWithoutAParentDeletesItselfToo()
    {
        const QPointer<PointToolTipWidget> tip =
            PointToolTipWidget::showTip(QStringLiteral("FLOW"), QString(), QPointF(10, 10), nullptr);
        QVERIFY(tip->isVisible());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(m_edits[0], &leave);
        QTRY_VERIFY(!tip);
    }

    void theTextStandsOnThePanel()
    {
        QPalette palette = QToolTip::palette();
        palette.setColor(QPalette::ToolTipText, Qt::blue);
        const QPalette before = QToolTip::palette();
        QToolTip::setPalette(palette);
        PointToolTipWidget* tip = makeTip();
        QToolTip::setPalette(before);
        const QImage image = tip->grab().toImage();
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(image.width() - 1, image.height() - 1), QColor(Qt::red));
        int written = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                written += image.pixelColor(x, y).blue() > 128 ? 1 : 0;
        }
        QVERIFY(written > 10);
    }

    void aStyleMayMaskATip()
    {
        PointToolTipWidget* tip = makeTip();
        QVERIFY(tip->mask().isEmpty());
        m_style->isMasked = true;
        tip->resize(120, 50);
        QCOMPARE(tip->mask(), QRegion(3, 0, 117, 50));
        tip->resize(140, 30);
        QCOMPARE(tip->mask(), QRegion(3, 0, 137, 30));
    }

    void styleSheetsForThePlatformsTipsReachIt()
    {
        const PointToolTipWidget* tip = makeTip();
        qApp->setStyleSheet(QStringLiteral("#qtooltip_label { font-size: 40px }"));
        const int size = tip->font().pixelSize();
        qApp->setStyleSheet(QString());
        QCOMPARE(size, 40);
    }

private:
    PointToolTipWidget* makeTip() const
    {
        return PointToolTipWidget::showTip(QStringLiteral("P1.FLOW"), QStringLiteral("Flow"), QPointF(300, 300),
                                           m_window.get());
    }

    /// A font with a descent of 2 and an ascent between these, if there is one.
    static std::optional<QFont> lowFont(int leastAscent, int mostAscent)
    {
        for (const QString& family : QFontDatabase().families()) {
            for (int size = 6; size < 20; ++size) {
                QFont font(family);
                font.setPixelSize(size);
                const QFontMetrics metrics(font);
                if (metrics.descent() == 2 && metrics.ascent() >= leastAscent && metrics.ascent() <= mostAscent)
                    return font;
            }
        }
        return {};
    }

    TipStyle* m_style = nullptr;
    std::unique_ptr<QWidget> m_window;
    QLineEdit* m_edits[2] = {};
};

QTEST_MAIN(tst_PointToolTipWidget)
#include "tst_pointtooltipwidget.moc"
