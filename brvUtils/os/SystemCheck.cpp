#include "brvUtils/os/SystemCheck.h"

#include "brvUtils/os/DynamicLibrary.h"
#include "brvUtils/os/ReflectiveMemory.h"

namespace brvUtils::os {

SystemFact cardDriverFact()
{
    const LibraryOpening opening = openLibrary(reflectiveMemoryLibrary);
    if (opening.opened == nullptr) {
        return {SystemFact::State::good, "card driver", "no " + std::string(reflectiveMemoryLibrary) + " is found; only segments on a reflective-memory card need it"};
    }
    const std::string file = libraryFile(librarySymbol(opening.opened, "RFM2gOpen"));
    closeLibrary(opening.opened);
    return {SystemFact::State::good, "card driver", (file.empty() ? std::string(reflectiveMemoryLibrary) : file) + " is found"};
}

} // namespace brvUtils::os
