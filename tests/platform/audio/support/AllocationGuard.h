#pragma once

/// While one lives, any allocation by operator new or malloc on its thread fails the test.
class AllocationGuard {
public:
    AllocationGuard();
    ~AllocationGuard();
    AllocationGuard(const AllocationGuard&) = delete;
    AllocationGuard& operator=(const AllocationGuard&) = delete;
};
