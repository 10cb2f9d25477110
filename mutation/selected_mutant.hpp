/// \file
/// Included before everything else where all mutants are compiled in at once: which of them is on.
#pragma once

extern int selectedMutant;            ///< From VADELCLIP_MUTANT, -1 where that is not set.
extern unsigned char* reachedMutants; ///< One byte for each mutant while a run notes what it reaches.

/// Stands before each place that holds mutants. It is no constant on purpose: nothing may be decided by the compiler.
inline bool anyMutantOf(int first, int last) {
    if (reachedMutants != nullptr) {
        reachedMutants[first] = 1;
    }
    return selectedMutant >= first && selectedMutant <= last;
}

inline bool isMutant(int number) {
    return selectedMutant == number;
}
