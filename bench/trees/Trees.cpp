// One piece of work on a tree as programs ask dos for it, to be timed as a whole beside the host's own tools.
//   solvane_trees copy FROM TO | delete DRAWER | walk DRAWER     host paths, absolute
// Walk examines everything below with all fields; links are not followed.
#include "platform/dos/CopyTree.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Volumes.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::uint64_t Walk(const std::string& top) {
    std::uint64_t objects = 0;
    std::vector<std::string> waiting{top};
    while (!waiting.empty()) {
        const std::string drawer = std::move(waiting.back());
        waiting.pop_back();
        dos::DirContext context = dos::ObtainDirContext(drawer);
        while (context) {
            const dos::ExamineData* object = dos::ExamineDir(context);
            if (!object)
                break;
            ++objects;
            if (object->Type == dos::TypeDrawer)
                waiting.push_back(drawer + "/" + object->Name);
        }
    }
    return objects;
}

int Tell(const dos::TreeResult& result) {
    std::printf("%llu objects, %llu skipped, lost %x, error %ld\n",
                static_cast<unsigned long long>(result.Done.Objects),
                static_cast<unsigned long long>(result.Skipped), result.Lost, result.FirstError);
    return result ? 0 : 1;
}

} // namespace

int main(int count, char** words) {
    const std::vector<std::string> arguments(words + 1, words + count);
    if (arguments.size() < 2 || !dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}))
        return 2;
    const auto path = [&](std::size_t at) { return "Host:" + arguments[at].substr(1); };
    if (arguments[0] == "copy" && arguments.size() == 3)
        return Tell(dos::CopyTree(path(1), path(2)));
    if (arguments[0] == "delete")
        return Tell(dos::DeleteTree(path(1)));
    if (arguments[0] == "walk") {
        std::printf("%llu objects\n", static_cast<unsigned long long>(Walk(path(1))));
        return 0;
    }
    return 2;
}
