#pragma once
// Where libtiff's and libgeotiff's warnings and errors go. A library inside a host must never
// print to the host's stderr, and libtiff's global handlers belong to the whole process, not to
// us: so every TIFF opened here carries handlers of its own (libtiff 4.5 open options, and
// libgeotiff's callback for its keys), which stop the message from reaching the global ones and
// pass its text to the host's debug channel instead.
//
// That channel is a C function `void zephra_debug_text(const char*)`, exported by the zephra
// library. The component must not link zephra, nor export more than its four functions for
// zephra to hand the channel over, so it looks the function up by name at run time, per
// message (messages are rare, and a later lookup never calls into an unloaded library). When the
// process has no such function, the text is dropped.

#include <geotiffio.h>
#include <tiffio.h>

#include <memory>

namespace tvgeotifflib {

struct TTiffOptionsFree {
  void operator()(TIFFOpenOptions* options) const noexcept { TIFFOpenOptionsFree(options); }
};
using TTiffOptionsPtr = std::unique_ptr<TIFFOpenOptions, TTiffOptionsFree>;

// Open options whose handlers forward as above; null when out of memory. libtiff copies the
// handlers into the TIFF, so the options may go once it is open.
TTiffOptionsPtr MessageOptions();

// libgeotiff's error callback (GTIFNewEx), forwarding the same way.
void GeoTiffMessage(GTIF* gtif, int level, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

}  // namespace tvgeotifflib
