#pragma once

#include "host/hostexport.h"

#include <QFrame>

/// Says above a page that the project's scripts don't run, and asks whether they may. The answer is kept.
class KORVANE_HOST_EXPORT TrustBar : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY(TrustBar)

public:
    /// \param folder of the project
    explicit TrustBar(const QString& folder, QWidget* parent = nullptr);

    /// Whether the user has answered this bar, whether or not the answer could be kept.
    bool isAnswered() const { return m_isAnswered; }

Q_SIGNALS:
    /// The user lets the scripts run.
    void trusted();

private:
    void answer(bool isTrusted);

    QString m_folder;
    bool m_isAnswered = false;
};
