#include "bench/peers/Library.h"

namespace Bench {

std::vector<LibraryInfo>& libraries() {
    static std::vector<LibraryInfo> all;
    return all;
}

const LibraryInfo* findLibrary(const std::string& name) {
    for (const LibraryInfo& info : libraries()) {
        if (info.name == name) return &info;
    }
    return nullptr;
}

}  // namespace Bench
