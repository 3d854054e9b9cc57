#pragma once

/// What a file carries besides its bytes, for a file that takes another's place. Failures are std::system_error. Both
/// files are open descriptors. Thread: any.
namespace FileAttributes {

/// Gives \p to the owner of \p from where that is allowed, its extended attributes, access lists among them, where \p
/// to can have them and no others, and its mode.
void copy(int from, int to);

/// Takes the immutable and the append-only flag off and lets the owner write. What is not set is not touched.
void makeWritable(int file);

} // namespace FileAttributes
