// The two menu entries, and the idle task that serves the helper while one of them is at work.
namespace Hopbox {
  interface Entry {
    action: number
    path: string[]
    item: ScriptMenuAction | null
  }

  const title = "Export to Hopbox..."
  const entries: Entry[] = [
    { action: 1674244, path: ["Main", "&File"], item: null },
    { action: 1674246, path: ["BookPanelPopup"], item: null },
  ]

  const busyPause = 20 // milliseconds between two idle tasks
  const startPause = 500
  const startTries = 120
  const triesAStart = 10
  let task: IdleTask | null = null
  let triesLeft = 0
  let chosen: number | null = null

  // Menus have names for scripts that are the same in every language, with or without the mark of the key.
  function namesOf(part: string): string[] {
    const plain = part.replace("&", "")
    return ["$ID/" + part, "$ID/" + plain, plain]
  }

  function findMenu(path: string[]): Menu | Submenu | null {
    let found: Menu | Submenu | null = null
    for (let i = 0; i < path.length; i++) {
      const places: Menus | Submenus = found === null ? app.menus : found.submenus
      found = null
      const names = namesOf(path[i])
      for (let n = 0; n < names.length && found === null; n++) {
        const menu = places.item(names[n])
        if (menu.isValid) found = menu
      }
      if (found === null) return null
    }
    return found
  }

  function setNames(names: JsonObject): void {
    for (let i = 0; i < entries.length; i++) {
      const item = entries[i].item
      const name = names[String(entries[i].action)]
      if (item !== null && typeof name === "string") item.properties = { title: name }
    }
  }

  function stopTask(): void {
    if (task !== null) task.remove()
    task = null
  }

  function startTask(pause: number): void {
    stopTask()
    task = app.idleTasks.add({ name: "Hopbox", sleep: pause })
    task.addEventListener(IdleTask.ON_IDLE, onIdle)
  }

  function lookForHelper(): void {
    const names = connect()
    if (names !== null) {
      setNames(names)
      stopTask()
      if (chosen !== null) runChosen(chosen)
    } else if (getRefusal() !== "" || --triesLeft <= 0) {
      stopTask()
      if (chosen !== null) alert(getRefusal() || "The helper of \"Export to Hopbox\" does not start.", "Export to Hopbox", true)
      chosen = null
    } else if (triesLeft % triesAStart === 0) {
      startHelper() // the last one may have been on its way out
    }
  }

  function onIdle(): void {
    if (!isConnected()) lookForHelper()
    else if (!serve()) {
      stopTask()
      // A helper that died with a window open has left the application at rest: the next one wakes it.
      if (!isConnected()) findHelper()
    }
  }

  function findHelper(): void {
    triesLeft = startTries
    startHelper()
    startTask(startPause)
  }

  function runChosen(action: number): void {
    chosen = null
    if (choose(action)) {
      startTask(busyPause)
    } else {
      chosen = action
      findHelper()
    }
  }

  function onInvoke(entry: Entry): void {
    if (isConnected()) runChosen(entry.action)
    else {
      chosen = entry.action
      findHelper()
    }
  }

  function onDisplay(entry: Entry): void {
    const state = isConnected() ? askState(entry.action) : null
    const isThere = entry.action === entries[0].action ? hasFrontDocument() : app.books.length > 0
    if (entry.item === null) return
    entry.item.properties = state === null ? { enabled: isThere } : { enabled: state.enabled, title: state.name }
  }

  function addEntry(entry: Entry): void {
    const menu = findMenu(entry.path)
    if (menu === null) return
    const item = app.scriptMenuActions.add(title, {})
    entry.item = item
    item.addEventListener(ScriptMenuAction.BEFORE_DISPLAY, function () {
      onDisplay(entry)
    })
    item.addEventListener(ScriptMenuAction.ON_INVOKE, function () {
      onInvoke(entry)
    })
    menu.menuItems.add(item, LocationOptions.AT_END)
  }

  export function start(): void {
    removeLeftPresets()
    for (let i = 0; i < entries.length; i++) addEntry(entries[i])
    app.addEventListener(Application.BEFORE_QUIT, disconnect)
    findHelper()
  }
}

Hopbox.start()
