#include "frame/EntryPoint.h"

#include "frame/Libraries.h"
#include "frame/MyProgram.h"
#include "frame/Ports.h"
#include "frame/Snapshot.h"
#include "interface/Locale.h"
#include "interface/Tell.h"
#include "interface/Windows.h"
#include "model/Program.h"
#include "platform/application/Start.h"
#include "platform/application/Termination.h"
#include "platform/dos/Volumes.h"
#include "platform/exec/PublicPorts.h"
#include "platform/intuition/Application.h"
#include "platform/workbench/Workbench.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace solvane {

namespace {

enum class PortClaim { Claimed, NoneFree, AlreadyRunning, Failed };

// Before there are requesters a message can only go to standard output; a start from the desktop has none.
void PrintStartFailure(const application::StartMessage& start, std::string_view text) {
    if (!start.FromWorkbench) {
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
}

std::string ReasonForNoDisplay() {
    const intuition::DisplayFailure& failure = intuition::WhyNoDisplay();
    return failure.Problem == intuition::DisplayProblem::Silent
               ? FormatMessage(MSG_DISPLAY_SILENT, failure.Display)
               : std::string(SAK_LocaleString(MSG_NO_DISPLAY_NAMED));
}

// Asks in the user's language whether a program may be started.
workbench::LaunchAnswer AskToStart(const std::string& path) {
    const int answer =
        SAK_EasyRequest(nullptr, RequesterTitle.View(), RequesterImage::Question,
                        FormatMessage(MSG_IS_PROGRAM, path), SAK_LocaleString(MSG_START_CANCEL_GAD));
    return answer == 1 ? workbench::LaunchAnswer::Start : workbench::LaunchAnswer::Refuse;
}

bool OpenPlatform(int argc, char** argv, const application::ProgramPlaces& places,
                  const application::StartMessage& start) {
    if (!dos::SetUpSystem({places.SystemSkeleton, places.ProgramDrawer})) {
        PrintStartFailure(start, std::string(SAK_LocaleString(MSG_NO_DOS)) + dos::SetUpProblem() + "\n");
        return false;
    }
    SetupLocale();
    if (!intuition::OpenDisplay(argc, argv)) {
        PrintStartFailure(start,
                          std::string(SAK_LocaleString(MSG_NO_INTUITION)) + ReasonForNoDisplay() + "\n");
        return false;
    }
    // A mistake in mounts.toml, say: the rest works.
    if (const std::string problem = dos::SetUpProblem(); !problem.empty()) {
        SAK_EasyRequest(nullptr, RequesterTitle.View(), RequesterImage::Warning, problem,
                        SAK_LocaleString(MSG_OK_GAD));
    }
    const auto openDrawer = [](const std::string& drawer) { return OpenWantedWindow(drawer); };
    workbench::SetHooks({.OpenDrawer = openDrawer, .MayStart = AskToStart});
    workbench::AddWBRunCommand();
    return true;
}

void NameInstance() {
    AppIconName = PortBuffer.View().substr(0, PortBuffer.Size() - std::string_view(".port").size());
    InstanceBaseName = AppIconName;
    ARexxPortBuffer = FormatText("SOLVANE.%lu", PortNumber);
}

// Takes the lowest free instance number. The lock around it lets two starts at one instant not take the same;
// it is given back on each way out but one: a start that finds all numbers taken ends in silence and holds
// the lock until its process is gone. That is intended.
PortClaim ClaimInstance() {
    exec::Forbid();
    if (MultipleCopies == 0) {
        PortBuffer = "Solvane.port";
        if (exec::FindPort(PortBuffer.View())) {
            exec::Permit();
            return PortClaim::AlreadyRunning;
        }
    } else {
        PortBuffer = FormatText("Solvane_%lu.port", PortNumber);
    }
    while (exec::FindPort(PortBuffer.View())) {
        if (++PortNumber > MaximumInstances) {
            return PortClaim::NoneFree;
        }
        PortBuffer = FormatText("Solvane_%lu.port", PortNumber);
    }
    port = exec::PublicPort::Create(PortBuffer.View());
    exec::Permit();
    return port ? PortClaim::Claimed : PortClaim::Failed;
}

void RunInstance(const application::StartMessage& start) {
    switch (ClaimInstance()) {
    case PortClaim::Claimed:
        NameInstance();
        MyProgram(start);
        break;
    case PortClaim::NoneFree:
        break;
    case PortClaim::AlreadyRunning:
        TellTerminate(FormatMessage(MSG_ALREADY_RUNNING, RequesterTitle.View()));
        break;
    case PortClaim::Failed:
        TellTerminate(FormatMessage(MSG_NO_PORT, RequesterTitle.View(), PortNumber));
        break;
    }
}

} // namespace

int EntryPoint(int argc, char** argv) {
    application::SecureStandardStreams();
    const application::TerminationWatch termination;
    const application::StartMessage start = application::ReadStartMessage(argc, argv);
    const application::ProgramPlaces places = application::FindProgram(argc > 0 ? argv[0] : nullptr);
    ProgramName = places.ProgramName;
    AnswerRequestersOfSnapshot();
    if (OpenPlatform(argc, argv, places, start)) {
        const MissingVolumeRequests missingVolumes;
        if (OpenLibrariesClasses()) {
            RunInstance(start);
        }
    }
    port.reset();
    SAK_LocaleClose();
    CloseLibrariesClasses();
    return 0;
}

} // namespace solvane
