#include "platform/console/ConsoleWindow.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace console {

namespace {

constexpr int ShowMilliseconds = 30;
constexpr int WriteMilliseconds = 50;
constexpr qsizetype LongestLine = 1000; // characters: what a terminal takes as one line whatever they are
constexpr qsizetype MostEarlier = 100;
constexpr std::size_t MostTyped = 65536; // bytes that wait for a command to read them
constexpr std::size_t ReadStep = 65536;  // bytes
constexpr QSize UsualSize{640, 240};
constexpr QSize LeastSize{200, 100};
const std::string EndOfFile = "\x04";
const std::string Break = "\x03";

constexpr std::array<QRgb, 8> Colours = {0xFF202020, 0xFFC03028, 0xFF208038, 0xFF9A7000,
                                         0xFF3060C8, 0xFF9040A8, 0xFF108090, 0xFFD8D8D8};

QString TextOf(char32_t character) {
    return QString::fromUcs4(&character, 1);
}

} // namespace

InputLine::InputLine(std::function<void(const std::string&)> send) : Send(std::move(send)) {
    setMaxLength(LongestLine);
}

void InputLine::SendLine() {
    const QString line = text();
    Send(line.toStdString() + "\n");
    if (!line.isEmpty() && echoMode() == Normal && (Earlier.isEmpty() || Earlier.last() != line))
        Earlier.append(line);
    if (Earlier.size() > MostEarlier)
        Earlier.removeFirst();
    Recalled = Earlier.size();
    clear();
}

void InputLine::Recall(int step) {
    Recalled = std::clamp<qsizetype>(Recalled + step, 0, Earlier.size());
    setText(Recalled < Earlier.size() ? Earlier.at(Recalled) : QString());
}

void InputLine::keyPressEvent(QKeyEvent* event) {
    const bool isControl = event->modifiers() == Qt::ControlModifier;
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        SendLine();
    else if (key == Qt::Key_Up || key == Qt::Key_Down)
        Recall(key == Qt::Key_Up ? -1 : 1);
    else if (isControl && key == Qt::Key_C && !hasSelectedText())
        Send(Break);
    else if (isControl && (key == Qt::Key_D || key == Qt::Key_Backslash))
        Send(EndOfFile);
    else
        QLineEdit::keyPressEvent(event);
}

ConsoleWindow::ConsoleWindow(int terminal, const WindowOptions& options, std::function<void()> closed)
    : Terminal(terminal),
      Options(options),
      Closed(std::move(closed)),
      Input([this](const std::string& bytes) { Type(bytes); }),
      Layout(this),
      Readable(terminal, QSocketNotifier::Read) {
    setWindowTitle(Options.Title);
    setAttribute(Qt::WA_ShowWithoutActivating, Options.Inactive);
    setWindowFlag(Qt::WindowCloseButtonHint, !Options.NoClose);
    SetUpView();
    Layout.setContentsMargins(0, 0, 0, 0);
    Layout.setSpacing(0);
    Layout.addWidget(&View);
    Layout.addWidget(&Input);
    Input.setFont(View.font());
    Input.setAccessibleName(Options.InputName);
    Input.setFocus();
    resize((Options.Place.isEmpty() ? UsualSize : Options.Place.size()).expandedTo(LeastSize));
    if (Options.HasPosition)
        move(Options.Place.topLeft());
    ShowTimer.setSingleShot(true);
    WriteTimer.setSingleShot(true);
    connect(&ShowTimer, &QTimer::timeout, this, [this] { ShowChanges(); });
    connect(&WriteTimer, &QTimer::timeout, this, [this] { WriteTerminal(); });
    connect(&Readable, &QSocketNotifier::activated, this, [this] { ReadTerminal(); });
    if (!Options.Auto)
        show();
}

void ConsoleWindow::SetUpView() {
    View.setReadOnly(true);
    View.setUndoRedoEnabled(false);
    View.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    View.setLineWrapMode(QPlainTextEdit::WidgetWidth);
    View.setWordWrapMode(QTextOption::WrapAnywhere);
    View.setAccessibleName(Options.OutputName);
}

void ConsoleWindow::ShowWhenDue() {
    if (!ShowTimer.isActive())
        ShowTimer.start(ShowMilliseconds);
}

void ConsoleWindow::ReadTerminal() {
    std::string bytes(ReadStep, '\0');
    const ssize_t got = ::read(Terminal, bytes.data(), bytes.size());
    if (got > 0) {
        Screen.Take(std::string_view(bytes).substr(0, static_cast<std::size_t>(got)));
        ShowWhenDue();
        if (!isVisible() && !HasEnded)
            show();
    } else if (got == 0 || (errno != EAGAIN && errno != EINTR)) {
        End();
    }
}

// Nobody is left who writes.
void ConsoleWindow::End() {
    HasEnded = true;
    Readable.setEnabled(false);
    ShowChanges();
    if (!Options.Wait || !isVisible())
        return std::exchange(Closed, [] {})();
    Input.setEnabled(false);
    setWindowTitle(Options.Title + u' ' + Options.Ended);
    setWindowFlag(Qt::WindowCloseButtonHint, true);
    show();
}

void ConsoleWindow::Type(const std::string& bytes) {
    if (Typed.size() + bytes.size() <= MostTyped)
        Typed += bytes;
    WriteTerminal();
}

void ConsoleWindow::WriteTerminal() {
    while (!Typed.empty() && !HasEnded) {
        const ssize_t gone = ::write(Terminal, Typed.data(), Typed.size());
        if (gone <= 0)
            return errno == EAGAIN || errno == EINTR ? WriteTimer.start(WriteMilliseconds) : Typed.clear();
        Typed.erase(0, static_cast<std::size_t>(gone));
    }
}

QTextCharFormat ConsoleWindow::FormatOf(const Style& style) const {
    const auto colour = [](std::int8_t number, const QColor& otherwise) {
        return number == DefaultColour ? otherwise : QColor(Colours[static_cast<std::size_t>(number)]);
    };
    QColor front = colour(style.Foreground, palette().color(QPalette::Text));
    QColor back = colour(style.Background, palette().color(QPalette::Base));
    if (style.Inverse)
        std::swap(front, back);
    QTextCharFormat format;
    format.setForeground(front);
    if (style.Inverse || style.Background != DefaultColour)
        format.setBackground(back);
    format.setFontWeight(style.Bold ? QFont::Bold : QFont::Normal);
    format.setFontItalic(style.Italic);
    format.setFontUnderline(style.Underline);
    return format;
}

void ConsoleWindow::InsertLine(QTextCursor& cursor, const Line& line) const {
    for (std::size_t at = 0; at < line.size();) {
        QString text;
        const Style style = line[at].Look;
        for (; at < line.size() && line[at].Look == style; ++at)
            text += TextOf(line[at].Character);
        cursor.insertText(text, FormatOf(style));
    }
}

// Brings the view up to date: from the first changed line on it is written anew.
void ConsoleWindow::ShowChanges() {
    const Changes changes = Screen.TakeChanges();
    QScrollBar* bar = View.verticalScrollBar();
    const bool wasAtEnd = bar->value() >= bar->maximum();
    QTextDocument* document = View.document();
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    const int dropped = static_cast<int>(
        std::min<std::size_t>(changes.Dropped, static_cast<std::size_t>(document->blockCount())));
    cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor, dropped);
    cursor.removeSelectedText();
    const auto& lines = Screen.Lines();
    std::size_t row = std::min(changes.First, static_cast<std::size_t>(document->blockCount()));
    if (row == static_cast<std::size_t>(document->blockCount())) {
        cursor.movePosition(QTextCursor::End);
    } else {
        cursor.setPosition(document->findBlockByNumber(static_cast<int>(row)).position());
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        if (row < lines.size())
            InsertLine(cursor, lines[row]);
        ++row;
    }
    for (; row < lines.size(); ++row) {
        cursor.insertBlock();
        InsertLine(cursor, lines[row]);
    }
    cursor.endEditBlock();
    if (wasAtEnd)
        bar->setValue(bar->maximum());
    termios modes{};
    const bool echoes = HasEnded || ::tcgetattr(Terminal, &modes) != 0 || (modes.c_lflag & ECHO) != 0;
    Input.setEchoMode(echoes ? QLineEdit::Normal : QLineEdit::NoEcho);
}

// Commands that lay out their text ask the terminal for its size.
void ConsoleWindow::TellSize() {
    const QFontMetrics metrics(View.font());
    const QSize room = View.viewport()->size();
    winsize size{};
    size.ws_col = static_cast<unsigned short>(
        std::clamp(room.width() / std::max(1, metrics.averageCharWidth()), 1, 400));
    size.ws_row =
        static_cast<unsigned short>(std::clamp(room.height() / std::max(1, metrics.lineSpacing()), 1, 400));
    Screen.SetRows(size.ws_row);
    ::ioctl(Terminal, TIOCSWINSZ, &size);
}

void ConsoleWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    TellSize();
}

// The terminal goes with the window: commands read the end of the file, and those that it leads are told.
void ConsoleWindow::closeEvent(QCloseEvent* event) {
    if (Options.NoClose && !HasEnded)
        return event->ignore();
    std::exchange(Closed, [] {})();
}

} // namespace console
