// Identifiers of the graphics tests' resources.
#pragma once

#define IDB_QUADRANTS 101
