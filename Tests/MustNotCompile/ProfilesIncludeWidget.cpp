// Profiles are kept without a window.
#include "Profiles/ProfileStore.h"
#ifdef FORBIDDEN
#include <QWidget>
#endif
