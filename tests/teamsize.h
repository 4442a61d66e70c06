// Test helper: runs the rest of a scope with a given OpenMP team size.
#ifndef LMSPATIALREFERENCE_TESTS_TEAMSIZE_H
#define LMSPATIALREFERENCE_TESTS_TEAMSIZE_H

#include <omp.h>

// Sets the default team size and restores the previous one on leaving the scope.
class TeamSize {
public:
    explicit TeamSize(int threads) : m_previous(omp_get_max_threads()) { omp_set_num_threads(threads); }
    ~TeamSize() { omp_set_num_threads(m_previous); }
    TeamSize(const TeamSize&) = delete;
    TeamSize& operator=(const TeamSize&) = delete;

private:
    int m_previous;
};

#endif  // LMSPATIALREFERENCE_TESTS_TEAMSIZE_H
