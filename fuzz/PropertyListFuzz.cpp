// Exercises the reader of property lists, and what the preferences make of a document: settings and lists
// stay within what their records promise, and what was taken is written so that it reads the same again.
#include "model/PrefsLists.h"
#include "platform/application/Dictionary.h"
#include "prefs/PrefsLists.h"
#include "prefs/PrefsTable.h"
#include "sak/Memory.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using application::Dictionary;

void Require(bool isSo) {
    if (!isSo)
        std::abort();
}

bool SetUp() {
    Require(solvane::SAK_MemorySetup(solvane::SAK_ThresholdSize, solvane::SAK_PuddleSize));
    Require(solvane::CreatePrefsLists());
    return true;
}

// The document after it went through the record and the lists.
std::string Taken(const Dictionary& document) {
    solvane::PrefsRecord prefs;
    Dictionary taken;
    for (const solvane::PrefsKey& key : solvane::PrefsKeys()) {
        key.Load(document, key.Key, solvane::PrefsRecord(), prefs);
        key.Save(prefs, key.Key, taken);
    }
    for (const solvane::PrefsList& list : solvane::PrefsLists()) {
        Require(list.Load(document.Array(list.Key)));
        taken.Set(list.Key, {list.Save()});
    }
    return taken.ToXml();
}

void CheckColumns() {
    for (const solvane::ColumnInfoNode& node : *solvane::ShowDetailsColumnsList) {
        Require(node.ColumnNumber > 1 || node.Shown == 1);
        Require(node.Width == 0 || (node.Width >= 8 && node.Width <= 4096));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool isReady = SetUp();
    Require(isReady);
    const auto document = Dictionary::FromXml({reinterpret_cast<const char*>(data), size});
    if (!document)
        return 0;
    const std::string written = document->ToXml();
    const auto again = Dictionary::FromXml(written);
    Require(again && again->ToXml() == written);
    const std::string taken = Taken(*document);
    CheckColumns();
    const auto reread = Dictionary::FromXml(taken);
    Require(reread && Taken(*reread) == taken);
    return 0;
}
