#pragma once

#include "platform/Localization.h"

#include <QTranslator>

/// The toolkit's own texts (the file dialog, the menus of text fields) in the language of the interface. They come with
/// the toolkit's translations where those are installed, else they stay English. Thread: main.
class ToolkitTexts {
public:
    /// Exchanges the toolkit's texts; windows that are open hear of it by the toolkit's own event.
    void setLanguage(AppLanguage language);

private:
    QTranslator m_translator;
};
