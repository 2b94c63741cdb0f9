#pragma once

#include <QLabel>
#include <QString>

/// A label of one line of plain text, which ends in dots where there is no room; then its tool tip says all of it.
class ElidedLabel : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY(ElidedLabel)

public:
    explicit ElidedLabel(QWidget* parent = nullptr);
    ~ElidedLabel() override;

    void setFullText(const QString& text);
    QString fullText() const { return m_text; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void elide();

    QString m_text;
};
