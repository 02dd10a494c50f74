// Picture files by AmigaDOS path. Only regular files are opened, without waiting; nothing is shown to the
// user. May be called from any thread.
#pragma once

#include "platform/datatypes/DecodePicture.h"

#include <optional>
#include <string>
#include <string_view>

namespace datatypes {

// The picture in the file, as large as the box has room. A path that begins with "/" is a host path. Nothing
// with IoErr: 212 when it is no picture or a broken one, 207 when it is too large, 103 when there is no
// memory for it, 226 when its disk does not answer in time.
[[nodiscard]] std::optional<Picture> LoadPicture(std::string_view path, const PictureBox& box = {});

// The same for either a picture file or, when the name ends in ".info", the picture of that icon, which grows
// to a box that has a limit on both sides.
[[nodiscard]] std::optional<Picture> LoadImageFile(std::string_view path, const PictureBox& box);

// What tells one state of a file from another: when it was changed and how large it is. Empty with IoErr when
// it is no regular file that can be asked.
[[nodiscard]] std::string StateOfFile(std::string_view path);

// Writes the picture as a PNG file; a file that is there stays whole until the new one is. False with IoErr.
[[nodiscard]] bool SavePicture(std::string_view path, const Picture& picture);

} // namespace datatypes
