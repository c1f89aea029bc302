#include "streams/Pieces.h"

#include <algorithm>

#include "values/Pool.h"

namespace Xml {
namespace {

constexpr std::size_t kSmallest = 262144;
constexpr std::size_t kLargest = 4194304;

}  // namespace

Pieces::~Pieces() {
    for (const Piece& piece : mPieces) Pool::release(piece.bytes, piece.size);
}

std::size_t Pieces::filled() const {
    std::size_t sum = 0;
    for (const Piece& piece : mPieces) sum += piece.filled;
    return sum;
}

void Pieces::add() {
    const std::size_t size = std::clamp(filled(), kSmallest, kLargest);
    mPieces.reserve(mPieces.size() + 1);
    mPieces.push_back({static_cast<char*>(Pool::allocate(size)), 0, size});
}

}  // namespace Xml
