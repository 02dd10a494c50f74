// Texts on their way to the toolkit. Names come from disks and networks, so nothing in them may act.
#include "platform/intuition/Native.h"
#include "platform/utility/Text.h"

#include <algorithm>

namespace intuition {

namespace {

constexpr std::size_t MaximumShown = 4096; // bytes; more than any line can show
// Symbols that the usual fonts have; most lack the ones made for each control character.
constexpr char32_t SymbolForNewline = 0x21B5, SymbolForTab = 0x21E5;
constexpr char32_t Ellipsis = 0x2026;
// A byte that is no UTF-8 is edited as a lone surrogate, which no valid text can contain.
constexpr char16_t EscapeBase = 0xDC00;

bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

void AppendCharacter(QString& text, char32_t c) {
    if (c > 0xFFFF) {
        text.append(QChar(QChar::highSurrogate(c)));
        text.append(QChar(QChar::lowSurrogate(c)));
    } else {
        text.append(QChar(static_cast<char16_t>(c)));
    }
}

// Embeddings and overrides of the writing direction let a name show as another one.
bool ChangesDirection(char32_t c) {
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

char32_t VisibleForm(char32_t c) {
    if (c == '\n' || c == 0x2028 || c == 0x2029)
        return SymbolForNewline;
    if (c == '\t')
        return SymbolForTab;
    if (c < 0x20 || c == 0x7F)
        return utility::ReplacementCharacter;
    if ((c >= 0x80 && c < 0xA0) || ChangesDirection(c) || c >= utility::InvalidByteBase)
        return utility::ReplacementCharacter;
    return c;
}

QString AsciiText(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

QString DisplayText(std::string_view text, Lines lines) {
    const std::string_view head = text.substr(0, utility::CutLength(text, MaximumShown));
    if (head.size() == text.size() && IsPlain(text))
        return AsciiText(text);
    QString shown;
    shown.reserve(static_cast<qsizetype>(head.size()) + 1);
    for (std::size_t at = 0; at < head.size();) {
        const utility::Character character = utility::Decode(head, at);
        const bool kept = character.Code == '\n' && lines == Lines::Many;
        AppendCharacter(shown, kept ? U'\n' : VisibleForm(character.Code));
        at += character.Length;
    }
    if (head.size() < text.size())
        AppendCharacter(shown, Ellipsis);
    return shown;
}

QString DisplayTextWithoutMnemonic(std::string_view text) {
    return DisplayText(text).replace(u'&', QStringLiteral("&&"));
}

QString MarkedText(std::string_view text) {
    QString label = DisplayTextWithoutMnemonic(text);
    const qsizetype mark = label.indexOf(u'_');
    if (mark >= 0 && mark + 1 < label.size())
        label.replace(mark, 1, u'&');
    return label;
}

QString HintText(std::string_view text) {
    const QString shown = DisplayText(text, Lines::Many);
    if (!shown.contains(u'<') && !shown.contains(u'&'))
        return shown;
    return QStringLiteral("<qt>") + shown.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")) +
           QStringLiteral("</qt>");
}

QString TitleText(std::string_view text) {
    return DisplayText(text).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

QString EditableText(std::string_view text) {
    if (IsPlain(text))
        return AsciiText(text);
    QString edited;
    edited.reserve(static_cast<qsizetype>(text.size()));
    for (std::size_t at = 0; at < text.size();) {
        const utility::Character character = utility::Decode(text, at);
        if (character.Code >= utility::InvalidByteBase)
            edited.append(
                QChar(static_cast<char16_t>(EscapeBase + character.Code - utility::InvalidByteBase)));
        else
            AppendCharacter(edited, character.Code);
        at += character.Length;
    }
    return edited;
}

std::string BytesOfEditable(const QString& text) {
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(text.size()));
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        if (unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
            utility::AppendUtf8(bytes, QChar::surrogateToUcs4(unit, text[++at]));
        else if (unit.unicode() >= EscapeBase + 0x80 && unit.unicode() <= EscapeBase + 0xFF)
            bytes.push_back(static_cast<char>(unit.unicode() - EscapeBase));
        else
            utility::AppendUtf8(bytes, unit.unicode());
    }
    return bytes;
}

} // namespace intuition
