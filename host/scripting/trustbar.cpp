#include "host/scripting/trustbar.h"

#include "host/scripting/scripttrust.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

TrustBar::TrustBar(const QString& folder, QWidget* parent) : QFrame(parent), m_folder(folder)
{
    setObjectName(QStringLiteral("trustBar"));
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    QPalette colors = palette();
    colors.setColor(QPalette::Window, colors.color(QPalette::ToolTipBase));
    colors.setColor(QPalette::WindowText, colors.color(QPalette::ToolTipText));
    setPalette(colors);
    auto* text =
        new QLabel(tr("This project's scripts don't run. Scripts can do whatever you can; run them only if you "
                      "trust where %1 comes from.")
                       .arg(QDir::toNativeSeparators(folder)));
    text->setTextFormat(Qt::PlainText); // the folder's name is somebody else's
    text->setWordWrap(true);
    auto* run = new QPushButton(tr("&Run scripts"));
    run->setObjectName(QStringLiteral("runScripts"));
    auto* refuse = new QPushButton(tr("&Don't run"));
    refuse->setObjectName(QStringLiteral("refuseScripts"));
    connect(run, &QPushButton::clicked, this, [this] { answer(true); });
    connect(refuse, &QPushButton::clicked, this, [this] { answer(false); });
    // An answer is given on purpose, by mouse or by Alt and its letter: not by Space or Return meant for the page.
    for (QPushButton* button : {run, refuse})
        button->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(text, 1);
    layout->addWidget(run);
    layout->addWidget(refuse);
}

void TrustBar::answer(bool isTrusted)
{
    // An answer that can't be kept counts for now; it is asked for again the next time.
    ScriptTrust::setAnswer(m_folder, isTrusted ? ScriptTrust::Answer::Trusted : ScriptTrust::Answer::Refused);
    hide();
    if (isTrusted)
        Q_EMIT trusted();
}
