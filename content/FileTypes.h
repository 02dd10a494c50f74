// File typing: the group, the Type column's text and the default icon of a file, from its datatype and from
// the default icons that the user has in ENVARC:Sys.
#pragma once

#include "model/ContentNode.h"
#include "platform/datatypes/DataType.h"
#include "platform/dos/Locks.h"
#include "sak/Datatypes.h"

#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace solvane {

// The default icons in ENVARC:Sys, read at the first question; case does not count. One object serves one
// scan.
class DefaultIcons {
public:
    // The icon's name as the drawer spells it, valid as long as the object; empty when it is not there.
    [[nodiscard]] std::string_view Find(std::string_view name);
    // The icon of an extension (without its dot), empty when there is none; "jpg" counts as "jpeg".
    [[nodiscard]] std::string_view FindForExtension(std::string_view extension);

private:
    void ReadOnce();

    std::unordered_map<std::string, std::string> ByFoldedName;
    std::unordered_map<std::string, std::string_view> ByExtension; // answers given before, a limited number
    bool Read = false;
};

// Types files by their datatypes. Files of one datatype share the texts that it forms.
class FileTyper {
public:
    // Fills group, type and default icon of the node. A null datatype, of a file that cannot be examined,
    // leaves them as they are.
    void Type(ContentNode& node, const datatypes::DataType* type);

private:
    struct Naming {
        Text<35> DatatypeName;
        Text<50> DefaultIconName;
    };
    const IdentifiedType& Identify(const datatypes::DataType* type);
    const Naming& NamingFor(const datatypes::DataType* type, std::uint32_t group, std::string_view extension);
    [[nodiscard]] Naming NamingByType(const IdentifiedType& identified, std::uint32_t group);

    DefaultIcons Icons;
    std::unordered_map<const datatypes::DataType*, IdentifiedType> Identities;
    std::map<std::tuple<const datatypes::DataType*, std::uint32_t, const char*>, Naming>
        Namings; // by datatype, group and the icon of the extension, null for none
};

// Collects the files of one drawer and types them many at a time, on all processors.
class TypeBatch {
public:
    explicit TypeBatch(const dos::FileLock& drawer);
    // The node must have its name, and stay where it is until Finish.
    void Add(ContentNode& node);
    void Finish();

private:
    void ObtainTypes();

    static constexpr std::size_t Limit = 4096; // files typed at a time

    Text<1024> Drawer; // empty when it has no name that fits: its files stay untyped
    FileTyper Typer;
    std::vector<ContentNode*> Nodes;
    std::vector<std::string_view> Names;
    std::vector<const datatypes::DataType*> Types;
};

// Fills version text and number of a file of the system's group, when a shown column wants them.
void CollectVersion(ContentNode& node);

// Opens a picture, animation or sound file for what it says of itself: dimensions, tags.
void CollectOwnFacts(ContentNode& node);

// Opens the file of the node to find out its type, and fills group, type and default icon. What the datatype
// says stands in the results of SAK_Identify too.
void GetFileType(ContentNode& node);

} // namespace solvane
