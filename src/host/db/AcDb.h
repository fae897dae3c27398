// The whole drawing database API in one include.
#pragma once

#include "host/db/AcGe.h"
#include "host/db/DbAnnotation.h"
#include "host/db/DbCore.h"
#include "host/db/DbDatabase.h"
#include "host/db/DbDictionary.h"
#include "host/db/DbEntity.h"
#include "host/db/DbSymbolTable.h"
#include "host/db/DbUndo.h"
#include "host/db/ResBuf.h"
