#pragma once

#include "host/sources/valuesource.h"

#include <QStringList>

#include <algorithm>
#include <vector>

/// Keeps whatever a source says.
class SourceListener : public QObject
{
public:
    explicit SourceListener(ValueSource& source)
    {
        connect(&source, &ValueSource::delivered, this, [this](const std::vector<Sample>& delivered) {
            batches.push_back(delivered);
            samples.insert(samples.end(), delivered.begin(), delivered.end());
        });
        connect(&source, &ValueSource::problemFound, this, [this](const QString& text) { problems.append(text); });
        connect(&source, &ValueSource::commandAnswered, this, [this](quint32 requestId, const QString& refusal) {
            answers.append(QStringLiteral("%1 %2").arg(QString::number(requestId), refusal).trimmed());
        });
        connect(&source, &ValueSource::stateChanged, this, [this, &source] { states.push_back(source.state()); });
    }

    /// "1000:200001=2.5 2000:200001=3/4" (time in ms, object's id, value, quality unless 0) since the last call.
    QString takeSamples()
    {
        QStringList texts;
        for (const Sample& sample : samples) {
            texts.append(QStringLiteral("%1:%2=%3%4")
                             .arg(sample.timeMs)
                             .arg(sample.object.id)
                             .arg(sample.value)
                             .arg(sample.quality == 0 ? QString() : QStringLiteral("/%1").arg(sample.quality)));
        }
        samples.clear();
        return texts.join(QLatin1Char(' '));
    }

    bool isInOrderOfTime() const
    {
        return std::is_sorted(samples.begin(), samples.end(),
                              [](const Sample& a, const Sample& b) { return a.timeMs < b.timeMs; });
    }

    std::vector<std::vector<Sample>> batches;
    std::vector<Sample> samples;
    QStringList problems;
    QStringList answers; ///< "17" of a command that was taken, "17 REASON" of one that was refused
    std::vector<ValueSource::State> states;
};
