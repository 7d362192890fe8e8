// library_silence.h: keeps what the Jet library prints off the user's terminal.
#pragma once

namespace dao {

/// For its life, what goes to standard error is lost. The library prints a line for each page of a damaged
/// file there; the error that ends the conversion says what matters.
class LibrarySilence {
 public:
  LibrarySilence();
  LibrarySilence(const LibrarySilence&) = delete;
  LibrarySilence& operator=(const LibrarySilence&) = delete;
  ~LibrarySilence();

 private:
  int standard_error_ = -1;  // -1: not silenced
};

}  // namespace dao
