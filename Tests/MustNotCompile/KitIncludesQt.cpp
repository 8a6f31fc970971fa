// The analysis library knows no Qt.
#include "Core/UUID.h"
#ifdef FORBIDDEN
#include <QString>
#endif
