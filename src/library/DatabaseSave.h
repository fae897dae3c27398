// Saving a library drawing's database straight to its file, in the format the user chose.
#pragma once

#include <string>

class AcDbDatabase;

// Adds ".dwg" to a path without extension, keeps the file's own preview,
// saves in the format DefaultFormatForSave names (restored afterwards) and
// returns the save's status (0 is success).
int SaveDatabaseToFile(AcDbDatabase* pDb, std::wstring strPath);
