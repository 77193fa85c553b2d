// SPDX-License-Identifier: MIT
// What the render module's classes have for scripts in another form than in the host's C++
// interface. Only the companion layer's generator reads this file.

class ZHardwareRenderer {
    /// Makes the list hold the names of the procedures in a location's list, as unicode and in the
    /// order of execution, and nothing else. What it holds before must be texts as well: they are
    /// what it holds afterwards when the operation fails.
    DrawProcedureReturnCode getDrawProcedureListNames(ZString const &backEnd, CallLocation location,
                                                      NameList names) const;
};
