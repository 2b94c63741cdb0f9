#pragma once

#include "scada/scadaexport.h"

#include <QLocale>
#include <QMap>
#include <QObject>

class TTSEnginInterface;

/// Speaks messages aloud, in English and in Korean, through the speech engine of each language.
///
/// The engines are libraries that are looked for by name ("vt_ENG", "vt_kor") when the first message of their language
/// comes. Nothing is reported: without its library, or when it fails to start, a language stays silent until a new
/// front end is made. A host that brings libraries of those names of its own loads them before the first message. GUI
/// thread only.
class KORVANE_SCADA_EXPORT KorvaneTTSInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneTTSInterface)

public:
    explicit KorvaneTTSInterface(QObject* parent);
    /// Ends the engines with it, and what they speak.
    ~KorvaneTTSInterface() override;

    /// Has the engine of \p language speak \p text, and returns when the engine takes it; whether that ends what is being
    /// spoken is the engine's affair. The text goes out in the local 8-bit encoding, an empty one too. A message in a
    /// language other than English or Korean is dropped.
    void playMessage(const QString& text, QLocale::Language language);

protected:
    /// Makes both engines, children of this object. Their libraries stay untouched.
    void loadEngine();

private:
    bool m_isEngineLoaded = false;
    QMap<int, TTSEnginInterface*> m_engines; ///< by QLocale::Language
};
