# The machine of docs/tavlynd.md, for the shell that runs its command lines in namespaces of its own: /etc and hosts, a user
# who may do everything, services that start as their units say, and a reader on which cards are laid.

home=$(dirname "$HOME")/machine
installed=$(dirname "$HOME")/usr
mkdir "$home" "$home/share"
cp -a /etc "$home/etc" 2>/dev/null
sed -i '/^\(tavlyn\|mosquitto\):/d' "$home/etc/group"
printf '%s:x:%d:\n' tavlyn "$(id -g)" mosquitto "$(id -g)" >>"$home/etc/group"
echo '127.0.0.1 localhost broker.example' >"$home/etc/hosts"
mount --bind "$home/etc" /etc
mount --bind /usr/share "$home/share"
mount -t tmpfs none /usr/share
ln -s "$home"/share/* /usr/share/
ln -sfn "$installed/share/tavlynapi" /usr/share/tavlynapi
mount -t tmpfs none /var/lib
mkdir -p /var/lib/tavlynd /etc/mosquitto/conf.d /etc/mosquitto/certs

sudo() { "$@"; }

# What the page shows as the contents of such a file.
sudoedit() { sed -n "/^\`\`\`${1##*.}\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$SOURCES/docs/tavlynd.md" >"$1"; }

# Ready as the service manager would wait for it; the agent also for its reader.
systemctl() {
  case $* in
    'restart mosquitto')
      echo "user $(id -un)" | cat - /etc/mosquitto/conf.d/tavlyn.conf >"$home/mosquitto.conf"
      mosquitto -c "$home/mosquitto.conf" >"$home/mosquitto.log" 2>&1 &
      until grep -q ' running$' "$home/mosquitto.log"; do sleep 0.1; done
      ;;
    'enable --now tavlynd')
      $(sed -n 's:^ExecStart=/usr/bin/::p' "$installed/lib/systemd/system/tavlynd.service") >"$home/tavlynd.log" 2>&1 &
      until grep -q 'is there' "$home/tavlynd.log" && grep -q connected "$home/tavlynd.log"; do sleep 0.1; done
      ;;
    *) return 1 ;;
  esac
}

tavlynsim serve --no-interactive --socket "$home/devices" --device reader,serial=0400123456 \
  --card 01020303:26 --on 700 --off 700 --repeat >"$home/devices.log" 2>&1 &
until seen=$(tavlynsim env --socket "$home/devices" 2>/dev/null); do sleep 0.1; done
eval "$seen"
tavlynctl --quiet config save desk.hwg >/dev/null
