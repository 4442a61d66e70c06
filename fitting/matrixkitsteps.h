// The recursive and elimination steps behind mat_del and mat_min2, private to
// the matrix kit.
#ifndef LMSPATIALREFERENCE_MATRIXKITSTEPS_H
#define LMSPATIALREFERENCE_MATRIXKITSTEPS_H

// Determinant by full-pivot elimination over n row pointers; destroys the rows.
double _mat_del(int n, double** rows);
// Eliminates the symmetric form M with its first unknown fixed; 0 when the
// form is found indefinite.
int _mat_min2(int n, double* M, int* idx);

#endif  // LMSPATIALREFERENCE_MATRIXKITSTEPS_H
