#include "platform/console/ConsoleProgram.h"

#include "platform/application/Start.h"
#include "platform/console/ConsoleWindow.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Application.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace console {

namespace {

constexpr int CodeFail = 20;
constexpr int LeastArguments = 11;

int NumberOf(const char* text, bool& isGiven) {
    bool isNumber = false;
    const int number = QString::fromUtf8(text).toInt(&isNumber);
    isGiven = isGiven && isNumber;
    return isNumber ? number : 0;
}

WindowOptions ReadOptions(char** argv) {
    WindowOptions options;
    bool hasSize = true;
    options.HasPosition = true;
    const int left = NumberOf(argv[1], options.HasPosition);
    const int top = NumberOf(argv[2], options.HasPosition);
    const int width = NumberOf(argv[3], hasSize);
    const int height = NumberOf(argv[4], hasSize);
    options.Place = QRect(left, top, hasSize ? width : 0, hasSize ? height : 0);
    options.Title = QString::fromUtf8(argv[5]).remove(QStringLiteral("[*]"));
    const QStringList words = QString::fromUtf8(argv[6]).split(u' ');
    options.Auto = words.contains(QStringLiteral("AUTO"));
    options.Wait = words.contains(QStringLiteral("WAIT"));
    options.Inactive = words.contains(QStringLiteral("INACTIVE"));
    options.NoClose = words.contains(QStringLiteral("NOCLOSE"));
    options.InputName = QString::fromUtf8(argv[8]);
    options.OutputName = QString::fromUtf8(argv[9]);
    options.Ended = QString::fromUtf8(argv[10]);
    return options;
}

} // namespace

int RunConsole(int argc, char** argv) {
    application::SecureStandardStreams();
    if (argc < LeastArguments || !::isatty(STDIN_FILENO)) {
        std::fputs("conwindow: is started for \"CON:\" only\n", stderr);
        return CodeFail;
    }
    intuition::SetLanguage(argv[7]);
    if (!intuition::OpenDisplay(argc, argv)) {
        std::fputs("conwindow: no display answers\n", stderr);
        return CodeFail;
    }
    ::fcntl(STDIN_FILENO, F_SETFL, ::fcntl(STDIN_FILENO, F_GETFL) | O_NONBLOCK);
    {
        exec::Task* task = exec::FindTask();
        const ConsoleWindow window(STDIN_FILENO, ReadOptions(argv),
                                   [task] { exec::Signal(task, exec::BreakControlC); });
        if (::write(STDOUT_FILENO, "R", 1) == 1)
            static_cast<void>(exec::Wait(exec::BreakControlC));
    }
    intuition::CloseDisplay();
    return 0;
}

} // namespace console
