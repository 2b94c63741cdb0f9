#pragma once

#include "platform/platformexport.h"

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class FindDialog;
}

/// Asks what to look for and in which direction; whoever opens it does the looking. Non-modal, made to be kept and
/// shown again.
class KORVANE_PLATFORM_EXPORT FindDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(FindDialog)

public:
    explicit FindDialog(QWidget* parent);
    ~FindDialog() override;

    QString text() const;
    /// Puts \p text into the field, as the text to look for next.
    void setText(const QString& text);

Q_SIGNALS:
    /// The user wants the next place with \p text, which is not empty.
    void findNext(const QString& text, Qt::CaseSensitivity sensitivity);
    /// Likewise the place before.
    void findPrevious(const QString& text, Qt::CaseSensitivity sensitivity);

protected:
    /// The field has the focus, its text selected, each time the dialog comes up.
    void showEvent(QShowEvent* event) override;

private:
    Qt::CaseSensitivity sensitivity() const;

    std::unique_ptr<Ui::FindDialog> m_ui;
};
