// Sets the OpenMP team size for a test and restores it afterwards.
#ifndef LMSPATIALREFERENCE_TESTS_TEAMSIZE_H
#define LMSPATIALREFERENCE_TESTS_TEAMSIZE_H

#include <omp.h>

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
