// The classes that the manifest names are made by the program itself: the system asks here, as it would ask a
// library.

#include "platform/com/class_factory.h"

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** out) {
  return platform::com::give_offered_factory(class_id, iid, out);
}
