// noCapture.cpp - replaces capture.cpp in a build without libpcap.
#include "packets/capture.h"

std::string readCapture(Input& /*input*/, const std::string& /*filter*/,
                        const FoundMessage& /*found*/, CaptureCounts& /*counts*/) {
  throw CaptureUsageError("captures cannot be read, this program is built without libpcap");
}
