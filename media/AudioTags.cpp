#include "media/AudioTags.h"

namespace solvane {

bool GetMP3Tags(ContentNode&) {
    return false;
}

bool GetFLACTags(ContentNode&) {
    return false;
}

bool GetWAVTags(ContentNode&) {
    return false;
}

bool GetAIFFTags(ContentNode&) {
    return false;
}

} // namespace solvane
