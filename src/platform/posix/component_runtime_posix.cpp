#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <utility>

#include "automation/failure.h"
#include "platform/component_abi.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "platform/posix/path_posix.h"

using automation::Error;
using automation::Failure;

namespace platform {
namespace {

ClassMaker& offered() {
  static ClassMaker maker;
  return maker;
}

// The file that this code was loaded from. The system doesn't tell where the program itself lies, so that one
// is asked for by the way of its process.
std::filesystem::path own_file() {
  Dl_info info{};
  link_map* map = nullptr;
  void* extra = nullptr;
  if (dladdr1(reinterpret_cast<void*>(&offered), &info, &extra, RTLD_DL_LINKMAP) != 0) {
    map = static_cast<link_map*>(extra);
  }
  std::error_code ignored;
  if (map != nullptr && *map->l_name != '\0') return std::filesystem::absolute(map->l_name, ignored);
  return std::filesystem::read_symlink("/proc/self/exe", ignored);
}

}  // namespace

std::string component_folder() {
  const std::string folder = own_file().parent_path().string();
  return folder == "/" ? std::string() : posix::addin_form(folder);
}

std::string component_name() {
  std::string name = own_file().stem().string();
  return name.starts_with("lib") ? name.substr(3) : name;
}

void offer_classes(ClassMaker maker) {
  offered() = std::move(maker);
}

}  // namespace platform

extern "C" {

/// How a component reaches the classes that the program offers: the program exports this function, a
/// component keeps its own copy to itself. Gives 0 and an object, or 1 and the failure.
__attribute__((visibility("default"))) int QvComponentCreate(const char* class_name, automation::Ref* made,
                                                             Failure* why) {
  try {
    // a copy: the maker may take the offer back
    if (const platform::ClassMaker maker = platform::offered()) *made = maker(class_name);
    if (*made) return 0;
  } catch (const Failure& failure) {
    *why = failure;
  }
  return 1;
}
}

namespace platform {

automation::Ref create_object(std::string_view class_name) {
  using Create = int(const char*, automation::Ref*, Failure*);
  Create* create = &QvComponentCreate;
  if (!offered()) {
    if (void* programs = dlsym(RTLD_DEFAULT, "QvComponentCreate"))
      create = reinterpret_cast<Create*>(programs);
  }
  automation::Ref made;
  Failure why(Error::cannot_create_object);
  if (create(std::string(class_name).c_str(), &made, &why) != 0) throw why;
  return made;
}

namespace {

class LoadedComponent : public Component {
 public:
  explicit LoadedComponent(const std::string& file) {
    // absolute, so that the component knows its folder whatever becomes the current one
    std::error_code ignored;
    const std::string path = std::filesystem::absolute(file, ignored).string();
    library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) throw Failure(dlerror());
    try {
      get_class_object_ = function<GetClassObject>("DllGetClassObject", file);
      can_unload_now_ = function<CanUnloadNow>("DllCanUnloadNow", file);
    } catch (const Failure&) {
      dlclose(library_);
      throw;
    }
  }
  ~LoadedComponent() override {
    // code that objects are left of has to stay
    if (can_unload_now_() == code::success) dlclose(library_);
  }
  LoadedComponent(const LoadedComponent&) = delete;
  LoadedComponent& operator=(const LoadedComponent&) = delete;

  automation::Ref create(std::string_view class_name) override {
    void* result = nullptr;
    if (get_class_object_(std::string(class_name).c_str(), class_factory_interface, &result) !=
            code::success ||
        result == nullptr) {
      throw Failure(Error::cannot_create_object);
    }
    struct Release {
      void operator()(ClassFactory* factory) const { factory->release(); }
    };
    const std::unique_ptr<ClassFactory, Release> factory(static_cast<ClassFactory*>(result));
    automation::Ref object = factory->create();
    if (!object) throw Failure(Error::cannot_create_object);
    return object;
  }

  bool can_unload() override { return can_unload_now_() == code::success; }

 private:
  template <class Function>
  Function* function(const char* name, const std::string& file) const {
    void* found = dlsym(library_, name);
    if (found == nullptr) throw Failure(file + " doesn't export " + name);
    return reinterpret_cast<Function*>(found);
  }

  void* library_ = nullptr;
  GetClassObject* get_class_object_ = nullptr;
  CanUnloadNow* can_unload_now_ = nullptr;
};

}  // namespace

std::unique_ptr<Component> load_component(const std::string& file) {
  return std::make_unique<LoadedComponent>(file);
}

}  // namespace platform
