#pragma once

#include <QString>

// Faults of the disk for the role of a second process, on POSIX. All give false where that can't be done.

// Mounts an empty file system of so many bytes on the folder; only this process and its children see it, and
// it goes with them. Needs the right to mount, which root has and, on most systems, any user in a namespace
// of his own.
bool MountSmallDisk(const QString& folder, int bytes);

// The same with a file system that can't claim space.
bool MountDiskThatClaimsNothing(const QString& folder);

// From now on, no file of this process grows beyond so many bytes: a write that would fails.
bool LimitFileSize(int bytes);
