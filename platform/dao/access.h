// access.h: what an open database file may be used for.
#pragma once

namespace dao {

enum class Access { read_write, read_only };

}  // namespace dao
