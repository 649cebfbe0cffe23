#!/usr/bin/env bash
# Builds the toolkit for Windows out of Debian's own sources, once: where it lies in this version and
# with these options already, nothing is done. Prints its folder.
#   tools/windows_toolkit.sh
set -eu
cd "$(dirname "$0")/.."

version=$(dpkg-query -W -f '${source:Version}' qt6-base-dev)
# What Kelvaron doesn't use isn't built. tabletevent needs a header that the compiler hasn't.
options=(-DCMAKE_BUILD_TYPE=MinSizeRel -DBUILD_SHARED_LIBS=ON -DINPUT_opengl=no
  -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF
  # Its table of file types would have the time of packing in it.
  -DQT_AVOID_CMAKE_ARCHIVING_API=ON)
for feature in network sql dbus printsupport concurrent testlib xml vulkan tabletevent \
  system_zlib system_png system_jpeg system_freetype system_harfbuzz system_pcre2; do
  options+=("-DFEATURE_$feature=OFF")
done
for kind in SHARED MODULE; do
  # The time of linking stays out of the file.
  options+=("-DCMAKE_${kind}_LINKER_FLAGS=-s -Wl,--no-insert-timestamp")
done
key=$(sha256sum <<<"$version ${options[*]} $(cat cmake/windows.cmake)" | cut -c 1-12)
work=$PWD/build/toolkit
folder=$work/$key
if [ -e "$folder/complete" ]; then
  echo "$folder"
  exit
fi

# Source packages are asked for beside the lists of the system, which stay as they are.
mkdir -p "$work/lists/partial" "$work/source"
apt-get indextargets --format '$(SITE) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
  sort -u | sed 's/^/deb-src /' >"$work/sources.list"
apt=(-o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=-
  -o "Dir::State::Lists=$work/lists" -o APT::Sandbox::User=root -q)
source=$work/source/qt6-base-$version
if [ ! -e "$source" ]; then
  rm -rf "$work/source"
  mkdir -p "$work/source"
  (
    cd "$work/source"
    apt-get "${apt[@]}" update
    apt-get "${apt[@]}" source --download-only "qt6-base=$version"
    dpkg-source --extract ./*.dsc unpacked
    mv unpacked "$source"
  ) >"$work/source.log" 2>&1 || { tail -5 "$work/source.log" >&2; exit 1; }
fi

echo "Building the toolkit for Windows; that takes the better part of an hour." >&2
rm -rf "$folder"
{
  cmake -S "$source" -B "$work/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/windows.cmake" \
    -DCMAKE_INSTALL_PREFIX="$folder" -DCMAKE_C_COMPILER_LAUNCHER=ccache \
    -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DQT_HOST_PATH=/usr \
    -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake \
    -DCMAKE_CXX_FLAGS="-ffile-prefix-map=$work=." -DCMAKE_C_FLAGS="-ffile-prefix-map=$work=." \
    "${options[@]}" &&
    cmake --build "$work/build" && cmake --install "$work/build"
} >"$work/build.log" 2>&1 || {
  tail -20 "$work/build.log" >&2
  echo "The toolkit could not be built; build/toolkit/build.log has it whole." >&2
  exit 1
}
rm -rf "$work/build"
touch "$folder/complete"
echo "$folder"
