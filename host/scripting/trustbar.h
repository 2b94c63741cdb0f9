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

Q_SIGNALS:
    /// The user lets the scripts run.
    void trusted();

private:
    void answer(bool isTrusted);

    QString m_folder;
};
