#pragma once

/// While it exists, every request for memory that may be refused is refused. For tests.
class RefusedMemory {
public:
    RefusedMemory();
    ~RefusedMemory();
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;
};
