#include "platform/intuition/Language.h"

#include <QLibraryInfo>
#include <QLocale>

namespace intuition {

namespace {

// "de" for "german"; empty for what is no language's English name.
QString CodeOf(std::string_view language) {
    const QString name = QString::fromUtf8(language.data(), static_cast<qsizetype>(language.size()));
    for (int number = QLocale::C + 1; number <= QLocale::LastLanguage; ++number) {
        const auto known = static_cast<QLocale::Language>(number);
        if (QLocale::languageToString(known).compare(name, Qt::CaseInsensitive) == 0)
            return QLocale::languageToCode(known);
    }
    return {};
}

} // namespace

std::unique_ptr<QTranslator> ToolkitTexts(std::string_view language) {
    const QString code = CodeOf(language);
    if (code.isEmpty())
        return nullptr;
    auto texts = std::make_unique<QTranslator>();
    if (texts->load(QStringLiteral("qtbase_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        return texts;
    return code == QStringLiteral("el") ? GreekTexts() : nullptr;
}

} // namespace intuition
