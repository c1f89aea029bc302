#pragma once

#include <cstddef>
#include <vector>

namespace Xml {

/// A long text while it grows: in pieces, so that it never moves.
class Pieces {
public:
    struct Piece {
        char* bytes;
        std::size_t filled;
        std::size_t size;

        char* end() const { return bytes + size; }
    };

    Pieces() = default;
    Pieces(Pieces&& other) noexcept = default;
    Pieces& operator=(Pieces&& other) = delete;
    ~Pieces();

    bool isEmpty() const { return mPieces.empty(); }
    /// How many bytes are filled.
    std::size_t filled() const;
    /// Adds an empty piece, mostly as large as all others together.
    void add();
    /// The one to be filled. Needs: not empty.
    Piece& last() { return mPieces.back(); }

    std::vector<Piece>::const_iterator begin() const { return mPieces.begin(); }
    std::vector<Piece>::const_iterator end() const { return mPieces.end(); }

private:
    std::vector<Piece> mPieces;
};

}  // namespace Xml
