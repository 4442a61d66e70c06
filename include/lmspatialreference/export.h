/// @file
/// Marks what the two shared libraries export. Both are built with hidden
/// visibility, so a class or function that callers may use carries LM_API and
/// everything else stays private to its library.
#ifndef LMSPATIALREFERENCE_EXPORT_H
#define LMSPATIALREFERENCE_EXPORT_H

/// Gives a class or function default visibility, so the library exports it.
#define LM_API __attribute__((visibility("default")))

#endif  // LMSPATIALREFERENCE_EXPORT_H
