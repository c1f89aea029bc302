#pragma once

namespace tools {

/// What the program exits with. Of several files the worst counts.
enum Status : int {
    Success = 0,
    BadDocument = 1,  ///< not well-formed or not valid
    Trouble = 2,      ///< wrong usage, or a file that cannot be read or written

    /// An expression selects nothing: then `Success` in one file is enough, and a bad document is
    /// `Trouble`, so that the answer is known from the status.
    NothingSelected = 1,

    /// Two documents differ; a bad document is `Trouble`.
    Different = 1
};

}  // namespace tools
