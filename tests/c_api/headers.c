/* Every public header must compile as C on its own. */
#include <qorvel/config.h>
#include <qorvel/connid.h>
#include <qorvel/log.h>
#include <qorvel/services.h>
#include <qorvel/version.h>
