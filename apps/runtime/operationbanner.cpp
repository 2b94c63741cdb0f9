#include "apps/runtime/operationbanner.h"

#include <QHBoxLayout>
#include <QStyle>

namespace {

constexpr std::chrono::seconds shownFor{6};
const QColor doneGround(0xd7, 0xee, 0xda);
const QColor failedGround(0xf8, 0xd7, 0xd3);

} // namespace

OperationBanner::OperationBanner(QWidget* parent) : QFrame(parent), m_text(this), m_close(this)
{
    setObjectName(QStringLiteral("operationBanner"));
    setAutoFillBackground(true);
    m_text.setTextFormat(Qt::PlainText); // names and reasons are other people's texts
    m_text.setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_close.setAutoRaise(true);
    m_close.setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    m_close.setToolTip(tr("Close"));
    connect(&m_close, &QToolButton::clicked, this, &OperationBanner::clear);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 1, 4, 1);
    row->addWidget(&m_text, 1);
    row->addWidget(&m_close);
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, &OperationBanner::clear);
    setFixedHeight(sizeHint().height());
    m_close.hide();
}

void OperationBanner::showText(const QString& text, const QColor& ground)
{
    QPalette colors;
    colors.setColor(QPalette::Window, ground);
    colors.setColor(QPalette::WindowText, Qt::black);
    setPalette(colors);
    m_text.setText(text);
    m_text.setToolTip(text.toHtmlEscaped()); // the line may be too short for it
    m_close.show();
    m_end.stop();
}

void OperationBanner::clear()
{
    setPalette({});
    m_text.clear();
    m_text.setToolTip({});
    m_close.hide();
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
