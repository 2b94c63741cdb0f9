#include "apps/runtime/operationbanner.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QToolButton>

namespace {

constexpr std::chrono::seconds shownFor{6};
const QColor doneGround(0xd7, 0xee, 0xda);
const QColor failedGround(0xf8, 0xd7, 0xd3);

} // namespace

OperationBanner::OperationBanner(QWidget* parent) : QFrame(parent), m_text(this)
{
    setObjectName(QStringLiteral("operationBanner"));
    setAutoFillBackground(true);
    m_text.setTextFormat(Qt::PlainText); // names and reasons are other people's texts
    m_text.setWordWrap(true);
    m_text.setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* close = new QToolButton(this);
    close->setAutoRaise(true);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setToolTip(tr("Close"));
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 3, 4, 3);
    row->addWidget(&m_text, 1);
    row->addWidget(close);
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, &QWidget::hide);
    hide();
}

void OperationBanner::showText(const QString& text, const QColor& ground)
{
    QPalette colors = palette();
    colors.setColor(QPalette::Window, ground);
    colors.setColor(QPalette::WindowText, Qt::black);
    setPalette(colors);
    m_text.setText(text);
    m_end.stop();
    show();
}

void OperationBanner::showDone(const QString& text)
{
    showText(text, doneGround);
    m_end.start(shownFor);
}

void OperationBanner::showFailed(const QString& text)
{
    showText(text, failedGround);
}
