// Load for a runtime: "load project FOLDER COUNT" writes a project whose one page shows so many points as read-outs;
// "load feed COUNT HERTZ SECONDS" writes new values of all of them to standard output, as often and as long.

#include <QDir>
#include <QFile>
#include <QString>

#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <thread>

namespace {

constexpr int columns = 50;
constexpr int width = 38;
constexpr int height = 10;

bool write(const QString& name, const QByteArray& text)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

int makeProject(const QString& folder, int count)
{
    QByteArray points = "id,name,kind,stale_after\n";
    QByteArray shapes;
    for (int number = 0; number < count; ++number) {
        const QByteArray name = "P" + QByteArray::number(number);
        points += QByteArray::number(200001 + number) + "," + name + ",analog,5\n";
        shapes +=
            QByteArray(number ? ",\n" : "\n") + R"({"class":"ReadOut","place":[)" +
            QByteArray::number(number % columns * width) + ',' + QByteArray::number(number / columns * height) +
            R"(,38,10],"properties":{"FontSize":8,"Decimals":1},"actions":[{"type":2,"version":911,"targets":[{"tag":")" +
            name + R"("}],"settings":{}}]})";
    }
    const int rows = (count + columns - 1) / columns;
    const QByteArray page = R"({"format":"korvane-page","version":1,"size":[)" + QByteArray::number(columns * width) +
                            ',' + QByteArray::number(rows * height) + R"(],"layers":[{"name":"all","shapes":[)" +
                            shapes + "]}]}";
    const bool isWritten = QDir().mkpath(folder + QStringLiteral("/pages")) &&
                           write(folder + QStringLiteral("/project.json"), R"({"version":1,"startPage":"load"})") &&
                           write(folder + QStringLiteral("/points.csv"), points) &&
                           write(folder + QStringLiteral("/pages/load.pws"), page);
    return isWritten ? 0 : 1;
}

int feed(int count, int hertz, int seconds)
{
    using Clock = std::chrono::steady_clock;
    std::string line = "time";
    for (int number = 0; number < count; ++number)
        line += ";P" + std::to_string(number);
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::mt19937 random(1);
    const auto begin = Clock::now();
    for (int row = 0; row < hertz * seconds; ++row) {
        std::this_thread::sleep_until(begin + row * std::chrono::nanoseconds(1'000'000'000 / hertz));
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        line = std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
        for (int number = 0; number < count; ++number) {
            line += ';' + std::to_string(100 + random() % 900) + '.';
            line += char('0' + row % 10); // another value every time
        }
        line += '\n';
        if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size() || std::fflush(stdout) != 0)
            return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "project" && argc == 4)
        return makeProject(QString::fromLocal8Bit(argv[2]), std::stoi(argv[3]));
    if (command == "feed" && argc == 5)
        return feed(std::stoi(argv[2]), std::stoi(argv[3]), std::stoi(argv[4]));
    std::fputs("load project FOLDER COUNT | load feed COUNT HERTZ SECONDS\n", stderr);
    return 2;
}
