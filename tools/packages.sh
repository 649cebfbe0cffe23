# The Debian packages that Kelvaron needs, and their installation where some are missing.
# To be sourced by bash.

kelvaron_core_packages=(g++ cmake ninja-build pkg-config ccache lld libasio-dev libsodium-dev)
kelvaron_desktop_packages=(qt6-base-dev libqt6widgets6 libvlc-dev libvlc5 libvlc-bin vlc-plugin-base
  fonts-dejavu-core xdg-utils)
kelvaron_test_packages=(libgtest-dev libgmock-dev)
kelvaron_display_packages=(xvfb openbox imagemagick x11-utils)
kelvaron_driver_packages=(xdotool xclip at-spi2-core dbus libglib2.0-bin gir1.2-atspi-2.0 python3
  python3-pyatspi iproute2 util-linux)
kelvaron_engine_packages=(chocolate-doom crispy-doom doomsday doomsday-server freedoom)
kelvaron_code_lint_packages=(clang clang-format clang-tidy)
kelvaron_lint_packages=(desktop-file-utils appstream man-db systemd lintian)
kelvaron_packaging_packages=(debhelper dpkg-dev fakeroot git)
kelvaron_clang_packages=(clang)
kelvaron_windows_packages=(g++-mingw-w64-x86-64-posix wine64 wine fonts-wine googletest python3)
kelvaron_windows_packaging_packages=(dpkg-dev nsis zip)
kelvaron_fuzz_packages=(clang libclang-rt-14-dev)

# need_packages PACKAGE...: installs what is missing, with sudo for a user who isn't root.
need_packages() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing, and neither root nor sudo is at hand:" >&2
      echo "  apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -q >/dev/null &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -q --no-install-recommends "${missing[@]}" >/dev/null || {
    echo "The packages could not be installed: ${missing[*]}" >&2
    return 1
  }
}
