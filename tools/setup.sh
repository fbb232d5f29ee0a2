# Sourced by ./demo and ./test, with $root set to the project's folder: what both need before they can start.
# Debian 12; uses the network only where a package is missing.

packages=(
  g++ cmake ninja-build ccache
  nlohmann-json3-dev
  unixodbc-dev libsqliteodbc odbc-postgresql postgresql
  libgtest-dev libbenchmark-dev
  clang-format
  tidy librsvg2-bin python3 python3-pil
)
# For Windows: the compilers for 64 and 32 bits, widl, a Windows to run the tests on, and what makes and signs packages.
windows_packages=(
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools wine64
  nsis osslsigncode openssl dpkg-dev
)

# step TEXT COMMAND...: says what is being done, does it, says how long it took.
step() {
  local text=$1 start=$EPOCHREALTIME
  shift
  echo "== $text"
  "$@"
  local microseconds=$((${EPOCHREALTIME/[.,]/} - ${start/[.,]/}))
  printf '   %d.%d s\n' $((microseconds / 1000000)) $((microseconds / 100000 % 10))
}

as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "Installing packages needs root: run this as root once, or install sudo." >&2
    return 1
  fi
}

missing_packages() {
  local package
  for package in "${packages[@]}"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
  done
}

install_packages() {
  local missing
  mapfile -t missing < <(missing_packages)
  if [ ${#missing[@]} = 0 ]; then
    echo "   all are there"
    return
  fi
  echo "   missing: ${missing[*]}"
  as_root apt-get update -q
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# build PRESET [TARGET...]: configures, and builds the targets, or everything.
build() {
  local preset=$1
  shift
  cd "$root"
  cmake --preset "$preset" --log-level=WARNING
  cmake --build --preset "$preset" ${1:+--target "$@"}
}

# set_up PRESET [TARGET...]
set_up() {
  step "Looking for the packages that the build needs" install_packages
  step "Building ($1)" build "$@"
}
