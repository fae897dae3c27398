// The repair of a drawing just read: references that would make its object graph cyclic are
// refused.
#pragma once

#include "host/db/AcDb.h"

#include <vector>

// Looks at every object read from a file, once they are all in the database:
// a dictionary entry or an extension dictionary that leads back to where it
// came from, a dictionary entry naming a symbol table, an extension
// dictionary that is no dictionary, and a block reference (or a dimension's
// block) through which a block would contain itself. Each is dropped; the
// count of them is returned. Walks with explicit stacks: no depth is too deep.
int RefuseBadReferences(const std::vector<AcDbObject*>& objects);
