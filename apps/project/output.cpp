#include "apps/project/output.h"

#include "apps/project/commandline.h"
#include "apps/support/program.h"

#include <QJsonDocument>

#include <cstdio>

namespace {

void write(const QByteArray& bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
}

} // namespace

void Output::print(const QString& text)
{
    write(text.toUtf8());
}

void Output::print(const QJsonObject& object)
{
    write(QJsonDocument(object).toJson());
}

int Output::failed(const QString& text)
{
    Program::complain(text);
    return ExitCode::failed;
}
