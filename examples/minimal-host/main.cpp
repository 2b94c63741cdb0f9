// The least a program needs to show live values with the library: a hub, a runtime database, one shape, one action, and
// batches. A read-out follows a tank's level; a stroke over it shows when the level is above its limit, a red one when the
// source has failed. docs/embedding.md walks through it.
//
//   minimal-host                      opens a window; the level moves
//   minimal-host --picture FILE.png   takes four batches at once, says what they did, paints the window and ends

#include "platform/core/korvanefunction.h"
#include "platform/core/tesselinterface.h"
#include "platform/data/mwdatadepartment.h"
#include "platform/data/scadaruntimeinterface.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/valuemarks.h"
#include "scada/binding/objecttarget.h"
#include "scada/binding/scadatagactioninterface.h"
#include "scada/binding/tlqgraphicsitem.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QPainter>
#include <QTimer>

#include <cstdio>

using Korvane::ScadaObjectType;

namespace {

constexpr qint32 levelId = 200001;
constexpr double highLimit = 80;

/// 1. The service hub: one a process. It owns none of its services.
class Hub : public KorvaneScadaCoreInterface
{
public:
    Hub() : KorvaneScadaCoreInterface(nullptr) { setTTSInterface(nullptr); } // which has no value before

    bool open() override
    {
        if (m_state == New && missingServices().isEmpty())
            m_state = Open;
        return m_state == Open;
    }
    bool isOpen() const override { return m_state == Open; }
    QStringList missingServices() const override
    {
        return const_cast<Hub*>(this)->scadaRuntime() ? QStringList() : QStringList{"runtime database"};
    }
    QDateTime currentTime() const override { return QDateTime::currentDateTimeUtc(); }
    void close() override
    {
        if (m_state == Closed)
            return;
        m_state = Closed;
        Q_EMIT systemAboutTobeClose();
    }

private:
    enum { New, Open, Closed } m_state = New;
};

/// 2. The runtime database: names to kinds and ids, and what no record brings along. This one knows one point.
class Database : public ScadaRuntimeInterface
{
public:
    ObjectKey findByName(ScadaObjectType family, QStringView name) const override
    {
        return family == ScadaObjectType::Point && name == QStringLiteral("TANK.LEVEL") ? level() : ObjectKey();
    }
    ObjectKey findById(ScadaObjectType family, qint32 id) const override
    {
        return family == ScadaObjectType::Point && id == levelId ? level() : ObjectKey();
    }
    QVariant fieldValue(ObjectKey object, DataCode::DataField field) const override
    {
        return object == level() && field == DataCode::DataField::HighLimit ? QVariant(highLimit) : QVariant();
    }

private:
    static ObjectKey level() { return {ScadaObjectType::AnalogPoint, levelId}; }
};

/// 3. A shape: draws itself, and has named properties that actions set.
class ReadOut : public QGraphicsRectItem, public TesselInterface
{
public:
    explicit ReadOut(const QRectF& rect) : QGraphicsRectItem(rect)
    {
        KorvaneFunction::setTessel(this, this); // the overlay asks for the shape of the item that it lies on
    }

    QGraphicsItem* graphicsItem() override { return this; }
    StratelInterface* layer() override { return nullptr; }
    QVariant namedProperty(const QString& name) const override
    {
        if (name == "Geometry")
            return rect();
        return name == "Text" ? QVariant(m_text) : QVariant();
    }
    bool setNamedProperty(const QString& name, const QVariant& value) override
    {
        if (name != "Text")
            return false;
        m_text = value.toString();
        update();
        return true;
    }

    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        painter->setPen(QColor("#37474f"));
        painter->setBrush(QColor("#eceff1"));
        painter->drawRoundedRect(rect(), 6, 6);
        QFont font = painter->font();
        font.setPixelSize(28);
        painter->setFont(font);
        painter->drawText(rect().adjusted(0, 0, 0, -rect().height() / 3), Qt::AlignCenter, m_text);
        font.setPixelSize(13);
        painter->setFont(font);
        painter->drawText(rect().adjusted(0, rect().height() / 2, 0, 0), Qt::AlignCenter, "Level of the tank");
    }

private:
    QString m_text = "?";
};

/// 4. A tag action: owns its targets, and pushes their values onto its shape. The base does the rest.
class TextAction : public ScadaTagActionInterface
{
public:
    TextAction(TesselInterface* shape, const QString& tag)
        : ScadaTagActionInterface(shape), m_value(ObjectTarget::fromTagString(tag))
    {
    }

    int type() const override { return 1; }
    QString name() const override { return "Text"; }
    ScadaTagActionInterface* clone(TesselInterface* shape) const override
    {
        auto* made = new TextAction(*this);
        made->setShape(shape);
        return made;
    }
    bool isEqual(const ScadaTagActionInterface& other) const override
    {
        return type() == other.type() && m_value.isEqual(static_cast<const TextAction&>(other).m_value);
    }
    void toStream(ScadaTagActionStream& stream) const override { stream.setData(m_value.makeByteStream()); }
    void fromStream(const ScadaTagActionStream& stream, QMap<QString, QVariant>& values) override
    {
        m_value = ObjectTarget::makeFromByteStream(stream.data(), stream);
        values["tag"] = m_value.getTagString();
    }
    void applyToShape(bool) override
    {
        const QVariant value = m_value.value();
        shape()->setNamedProperty("Text", value.isValid() ? QString::number(value.toDouble(), 'f', 1) + " %" : "?");
    }
    void collectTargets(QList<ObjectTarget*>& out) override { out.append(&m_value); }
    void copyTargets(QList<ObjectTarget>& out) override { out.append(m_value); }

private:
    ObjectTarget m_value;
};

/// What the overlay over a shape shows.
const char* overlayText(const QGraphicsItem& shape)
{
    for (QGraphicsItem* child : shape.childItems()) {
        if (auto* overlay = dynamic_cast<TlqGraphicsItem*>(child))
            return overlay->isNoTLQ() ? ", the source has failed" : ", marked";
    }
    return "";
}

/// 5. Where batches come from. An empty point map says that the source has failed.
MwDataDepartment batchOf(double level)
{
    QuorixData record;
    record.setMember("value", level);
    record.setMember("limit", qint32(level > highLimit ? ValueMark::AboveHigh : 0));
    record.setMember("time", QDateTime::currentDateTimeUtc());
    MwDataDepartment batch;
    batch.points[levelId] = record;
    return batch;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCommandLineParser arguments;
    const QCommandLineOption picture("picture", "Take four batches, paint the window into FILE and end.", "FILE");
    arguments.addOption(picture);
    arguments.addHelpOption();
    arguments.process(application);

    Database database;
    Hub hub;
    hub.setScadaRuntime(&database);
    if (!hub.open())
        qFatal("missing: %s", qPrintable(hub.missingServices().join(", ")));

    QGraphicsScene scene;
    auto* readOut = new ReadOut(QRectF(0, 0, 220, 90));
    scene.addItem(readOut);
    QGraphicsView view(&scene);
    view.setRenderHint(QPainter::Antialiasing);
    view.setWindowTitle("Minimal host");
    view.resize(320, 180);

    // The action ends before its shape: the overlay belongs to the shape's item.
    TextAction action(readOut, "TANK.LEVEL");
    action.resolve(hub.scadaRuntime());
    const auto take = [&](const MwDataDepartment& batch) {
        action.readDataFromSource(&hub, batch, true);
        action.updateDatatoTarget(false);
        readOut->update(); // the overlay's setters leave repainting to the host
    };

    if (arguments.isSet(picture)) {
        for (const MwDataDepartment& batch : {batchOf(62.5), batchOf(87.5), batchOf(75), MwDataDepartment()}) {
            take(batch);
            std::printf("%s: %s%s\n", qPrintable(action.tagName()),
                        qPrintable(readOut->namedProperty("Text").toString()), overlayText(*readOut));
        }
        const bool isSaved = view.grab().save(arguments.value(picture));
        hub.close();
        return isSaved ? 0 : 1;
    }

    double level = 60;
    QTimer source;
    QObject::connect(&source, &QTimer::timeout, &application, [&] {
        level = level >= 95 ? 60 : level + 2.5;
        take(batchOf(level));
    });
    QObject::connect(&hub, &KorvaneScadaCoreInterface::systemAboutTobeClose, &source, &QTimer::stop);
    source.start(500);
    view.show();
    const int result = QApplication::exec();
    hub.close();
    return result;
}
