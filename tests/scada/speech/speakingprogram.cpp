// Uses speech front ends, at first one, as its arguments say, one after the other, and leaves without a word:
//   English=TEXT Korean=TEXT Japanese=TEXT   a message, to the front end that began last
//   begin                                    a further front end
//   end                                      the front end that began first goes
//   codepage=NAME                            texts go out in that encoding from here on
//   put=FILE:FOLDER                          copies a library to where it is looked for
#include "scada/audio/korvanettsinterface.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

#include <list>

namespace {

bool put(const QString& fileAndFolder)
{
    const QString file = fileAndFolder.section(QLatin1Char(':'), 0, 0);
    const QString folder = fileAndFolder.section(QLatin1Char(':'), 1);
    return QFile::copy(file, folder + QLatin1Char('/') + QFileInfo(file).fileName());
}

QLocale::Language languageOf(const QString& name)
{
    if (name == QLatin1String("English"))
        return QLocale::English;
    return name == QLatin1String("Korean") ? QLocale::Korean : QLocale::Japanese;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    std::list<KorvaneTTSInterface> frontEnds;
    frontEnds.emplace_back(nullptr);
    const QStringList steps = QCoreApplication::arguments().mid(1);
    for (const QString& step : steps) {
        const QString name = step.section(QLatin1Char('='), 0, 0);
        const QString value = step.section(QLatin1Char('='), 1);
        if (name == QLatin1String("begin")) {
            frontEnds.emplace_back(nullptr);
        } else if (name == QLatin1String("end")) {
            frontEnds.pop_front();
        } else if (name == QLatin1String("codepage")) {
            QTextCodec::setCodecForLocale(QTextCodec::codecForName(value.toLatin1()));
        } else if (name == QLatin1String("put")) {
            if (!put(value))
                return 2;
        } else {
            frontEnds.back().playMessage(value, languageOf(name));
        }
    }
    return 0;
}
