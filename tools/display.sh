# A virtual display with a small window manager, for machines without a screen.
# To be sourced by bash. What it starts ends with stop_display.

display_pids=()

# start_display [WIDTHxHEIGHT]: exports DISPLAY once windows can open on it.
start_display() {
  local size=${1:-1280x1024} file number
  file=$(mktemp)
  # Without -noreset it throws out whoever comes while the last one before goes, which the window
  # manager below could be beside its neighbour that only looks for it.
  Xvfb -displayfd 5 -screen 0 "${size}x24" -nolisten tcp -noreset 5>"$file" >/dev/null 2>&1 &
  display_pids+=($!)
  for _ in $(seq 100); do
    number=$(cat "$file")
    [ -n "$number" ] && break
    sleep 0.1
  done
  rm -f "$file"
  if [ -z "$number" ]; then
    echo "The virtual display did not start" >&2
    return 1
  fi
  export DISPLAY=":$number"
  unset WAYLAND_DISPLAY
  openbox >/dev/null 2>&1 &
  display_pids+=($!)
  for _ in $(seq 100); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 0x && return 0
    sleep 0.1
  done
  echo "The window manager of the virtual display did not start" >&2
  return 1
}

stop_display() {
  local pid
  for pid in "${display_pids[@]}"; do kill "$pid" 2>/dev/null; done
  for pid in "${display_pids[@]}"; do wait "$pid" 2>/dev/null; done
  display_pids=()
}
