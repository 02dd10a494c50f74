// Readers of the tags in sound files. Nothing is read yet: tags come with the preview work, and until then no
// file has any.
#pragma once

#include "model/ContentNode.h"

namespace solvane {

// Fill the tags of the entry from its file. True when there were some.
bool GetMP3Tags(ContentNode& node);
bool GetFLACTags(ContentNode& node);
bool GetWAVTags(ContentNode& node);
bool GetAIFFTags(ContentNode& node);

} // namespace solvane
