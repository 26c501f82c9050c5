# What an installed tree holds: the library, its companions, their headers, and the files by which other projects find them.
