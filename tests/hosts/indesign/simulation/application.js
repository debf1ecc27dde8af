// The simulated application: what the types declare and what the application's pages document, no more. An
// object knows the properties and methods of its class and refuses every other; a value of another type, or
// out of its range, raises as in the application. What an object does is in Behaviour, by class.
//
// Around it there is `native`: files, one connection, the commands of the test and the lines that it is told.

var say = function (event) { native.say(JSON.stringify(event)); };
var setting = JSON.parse(native.argument);

function fail(text, number) {
  var error = new Error(text);
  error.description = text;
  error.number = number || 45;
  throw error;
}

// --- Classes ---

function isOfType(type, value) {
  var kinds = type.split(" | ");
  for (var i = 0; i < kinds.length; i++) {
    var kind = kinds[i];
    if (kind === typeof value || kind === "object") return true;
    if (/\[\]$/.test(kind) && value instanceof Array) return true;
    if (enumerations[kind] && value && value.enumeration === kind) return true;
    if (globals[kind] && typeof globals[kind] === "function" && value instanceof globals[kind]) return true;
  }
  return false;
}

function checkValue(className, name, value) {
  var property = classes[className].properties[name];
  if (!property) fail("Object does not support the property or method '" + name + "'", 55);
  if (property[1]) fail("The property is read-only: '" + name + "'");
  if (!isOfType(property[0], value)) fail("Invalid value for set property '" + name + "'. Expected " + property[0] + ".", 30477);
  if (property.length > 2 && !(value >= property[2] && value <= property[3])) fail("Value of '" + name + "' is out of range.", 30481);
  return value;
}

var globals = {};
var identifier = 200;

// Makes an object of a class on `state`, which holds the values of its properties and what the test sees.
function make(className, state, behaviour) {
  var target = Object.create(globals[className].prototype);
  state.id = state.id || ++identifier;
  state.isValid = true;
  state.properties = {};
  var itself = new Proxy(target, {
    get: function (object, name) {
      if (name === "state$") return state;
      if (name === "constructor") return globals[className];
      if (name === "isValid") return state.isValid;
      if (/^[0-9]+$/.test(name) && behaviour.at) return behaviour.at(Number(name));
      var method = classes[className].methods[name];
      var property = classes[className].properties[name];
      if (!method && !property) fail("Object does not support the property or method '" + String(name) + "'", 55);
      if (!state.isValid) fail("Object is invalid", 45);
      if (method) {
        return function () {
          if (arguments.length > method[1]) fail("Too many arguments for '" + name + "'");
          if (!behaviour[name]) fail("The simulation has no '" + name + "'");
          return behaviour[name].apply(itself, arguments);
        };
      }
      if (behaviour["get_" + name]) return behaviour["get_" + name].call(itself);
      if (!(name in state)) fail("The simulation has no '" + name + "'");
      return state[name];
    },
    set: function (object, name, value) {
      if (name === "properties") {
        for (var one in value) state[one] = value[one]; // also what is read-only by itself
        return true;
      }
      checkValue(className, name, value);
      if (behaviour["set_" + name]) behaviour["set_" + name].call(itself, value);
      state[name] = value;
      return true;
    }
  });
  behaviour.addEventListener = function (type, handler) {
    (state.listeners = state.listeners || []).push([type, handler]);
    return {};
  };
  return itself;
}

function send(object, type) {
  var listeners = object.state$.listeners || [];
  for (var i = 0; i < listeners.length; i++) if (listeners[i][0] === type) listeners[i][1]({ eventType: type });
}

// A collection over a list.
function collect(className, list, add) {
  var none = make(className.replace(/s$/, ""), {}, {});
  none.state$.isValid = false;
  function find(matches) {
    for (var i = 0; i < list.length; i++) if (matches(list[i])) return list[i];
    return none;
  }
  return make(className, { list: list }, {
    get_length: function () { return list.length; },
    at: function (index) { return list[index] || none; },
    item: function (key) {
      if (typeof key === "number") return list[key] || none;
      return find(function (one) { return one.state$.name === key; });
    },
    itemByID: function (id) { return find(function (one) { return one.state$.id === id; }); },
    add: add
  });
}

function drop(list, object) {
  for (var i = 0; i < list.length; i++) if (list[i] === object) list.splice(i, 1);
  object.state$.isValid = false;
}

(function () {
  var name;
  for (name in classes) globals[name] = new Function("return function " + name + "() {}")();
  for (name in enumerations) {
    globals[name] = {};
    for (var item in enumerations[name]) globals[name][item] = { enumeration: name, item: item };
  }
  globals.IdleTask.ON_IDLE = "onIdle";
  globals.ScriptMenuAction.BEFORE_DISPLAY = "beforeDisplay";
  globals.ScriptMenuAction.ON_INVOKE = "onInvoke";
  globals.Application.BEFORE_QUIT = "beforeQuit";
})();

// --- Files, the connection ---

globals.File = function File(path) {
  if (!(this instanceof globals.File)) return native.exists(path) === 2 ? new globals.Folder(path) : new globals.File(path);
  this.fsName = this.fullName = path;
  this.name = path.replace(/.*\//, "");
};
globals.File.fs = "Unix";
globals.File.saveDialog = function () {
  say({ asked: "file" });
  return setting.saveAs ? new globals.File(setting.saveAs) : null;
};
globals.File.prototype = {
  get exists() { return native.exists(this.fsName) === 1; },
  get parent() { return new globals.Folder(this.fsName.replace(/\/[^\/]*$/, "")); },
  open: function (mode) {
    this.mode = mode;
    this.text = mode === "r" ? native.read(this.fsName) : "";
    return this.text !== null;
  },
  read: function () { return this.text; },
  write: function (text) { this.text += text; return true; },
  close: function () { return this.mode === "r" || native.write(this.fsName, this.text); },
  execute: function () { return native.execute(this.fsName); }
};
globals.Folder = function Folder(path) { this.fsName = this.fullName = path; };
globals.Folder.userData = new globals.Folder(setting.userData);

// Answers are counted, and one of them may go wrong.
var answers = 0;

function breakAnswer(text) {
  switch (setting.how) {
    case "fail": return text.replace(/"result":[0-9]+/, '"result":2').replace(/"value":/, '"none":');
    case "none": return text.replace(/"result":[0-9]+/, '"result":1').replace(/"value":/, '"none":');
    case "type": return text.replace(/"value":[^\n]*\n/, '"value":{"a":[-1]}}\n');
    case "nonsense": return "\u0001 no JSON\n";
    case "late": native.sleep(setting.lateness); return text;
    case "die": native.exit(9); return text;
    case "kill": native.killHelper(); return text;
  }
  return text;
}

globals.Socket = function Socket() { this.timeout = 10; };
globals.Socket.prototype = {
  open: function (host) {
    this.id = native.connect(Number(host.split(":")[1]));
    return this.id >= 0;
  },
  write: function (text) {
    if (/^\{"answer":/.test(text)) {
      say({ answer: ++answers, line: text.substr(0, 300) });
      if (answers === setting.nth) text = breakAnswer(text);
    }
    return native.send(this.id, text);
  },
  readln: function () { return native.receive(this.id, this.timeout) || ""; },
  close: function () { native.disconnect(this.id); return true; }
};

// --- Documents and books: files of JSON ---

var openDocuments = [];
var openBooks = [];

function listOf(className, values, toState) {
  var list = [];
  for (var i = 0; i < values.length; i++) list.push(make(className.replace(/s$/, ""), toState(values[i], i), {}));
  return collect(className, list);
}

// The pages that an export range names; "+3" is the third of the document.
function choosePages(document, range) {
  var all = document.state$.content.pages;
  if (range === globals.PageRange.ALL_PAGES) return all;
  var chosen = [];
  var parts = range.split(",");
  for (var i = 0; i < parts.length; i++) {
    var place = parts[i].charAt(0) === "+" ? Number(parts[i].substr(1)) - 1 : all.indexOf(parts[i]);
    if (!(place >= 0 && place < all.length)) fail("Invalid page range: " + range, 30501);
    chosen.push(all[place]);
  }
  return chosen;
}

function writePdf(file, pages) {
  var objects = ["<</Type/Catalog/Pages 2 0 R>>", ""];
  var kids = [];
  for (var i = 0; i < pages.length; i++) {
    var content = "BT /F1 24 Tf 20 20 Td (" + pages[i] + ") Tj ET";
    kids.push((objects.length + 1) + " 0 R");
    objects.push("<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 100]/Contents " + (objects.length + 2) + " 0 R" +
      "/Resources<</Font<</F1<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>>>");
    objects.push("<</Length " + content.length + ">>stream\n" + content + "\nendstream");
  }
  objects[1] = "<</Type/Pages/Count " + pages.length + "/Kids[" + kids.join(" ") + "]>>";
  var pdf = "%PDF-1.4\n";
  var table = "0000000000 65535 f \n";
  for (i = 0; i < objects.length; i++) {
    table += ("000000000" + pdf.length).slice(-10) + " 00000 n \n";
    pdf += (i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  var end = "xref\n0 " + (objects.length + 1) + "\n" + table + "trailer<</Root 1 0 R/Size " + (objects.length + 1) +
    ">>\nstartxref\n" + pdf.length + "\n%%EOF\n";
  if (!native.write(file.fsName, pdf + end)) fail("The file can't be written.", 30486);
}

// Without this the application would show its windows, which nobody answers.
function expectQuiet(what) {
  if (app.scriptPreferences.userInteractionLevel !== globals.UserInteractionLevels.NEVER_INTERACT) say({ dialog: what });
}

// Cancel is pressed at the very end, or once where "cancel" was ordered.
function cancelIfPressed() {
  var isPressed = setting.cancelled || setting.cancelledNext;
  setting.cancelledNext = false;
  if (isPressed) fail("User canceled this action.", -128);
}

function exportPdf(format, to, showingOptions, using, pages) {
  if (format !== globals.ExportFormat.PDF_TYPE || !(to instanceof globals.File)) fail("Invalid parameter", 30477);
  if (showingOptions || !(using instanceof globals.PDFExportPreset) || !using.isValid) say({ dialog: "options" });
  expectQuiet("export");
  var values = {};
  for (var name in using.state$.set) values[name] = using.state$.set[name].item || using.state$.set[name];
  say({ exported: to.fsName, pages: pages, preset: values, view: app.pdfExportPreferences.viewPDF });
  writePdf(to, pages);
  cancelIfPressed();
}

var packageNames = ["fonts", "links", "profiles", "update", "hidden", "ignore", "report", "idml", "pdf", "style", "hyphenation"];

function packageFiles(folder, documents, values) {
  var said = { packaged: folder.fsName };
  for (var i = 0; i < packageNames.length; i++) said[packageNames[i]] = values[i];
  say(said);
  if (!(folder instanceof globals.Folder)) fail("Invalid parameter", 30477);
  expectQuiet("package");
  for (i = 0; i < documents.length; i++) {
    var content = documents[i].content;
    for (var n = 0; n < content.links.length; n++) {
      var isThere = native.exists(content.links[n]) === 1;
      if (!isThere && !values[5]) return false;
      if (isThere && values[1]) native.copy(content.links[n], folder.fsName + "/Links/" + content.links[n].replace(/.*\//, ""));
    }
    if (!native.write(folder.fsName + "/" + documents[i].name, JSON.stringify(content))) return false;
  }
  cancelIfPressed();
  return true;
}

function makeDocument(path, isShown) {
  var text = path === null ? '{"pages":["1"],"fonts":[],"links":[]}' : native.read(path);
  if (text === null) fail("The file can't be opened.", 30486);
  var content = JSON.parse(text);
  var state = { content: content, path: path, name: path === null ? "Untitled-1" : path.replace(/.*\//, ""), modified: false, visible: isShown };
  var document = make("Document", state, {
    get_saved: function () { return state.path !== null; },
    get_fullName: function () {
      if (state.path === null) fail("The document has not yet been saved.", 53);
      return new globals.File(state.path);
    },
    get_viewPreferences: function () { return app.viewPreferences; },
    save: function (to) {
      var path = to ? to.fsName : state.path;
      if (path === null || setting.cannotSave || !native.write(path, JSON.stringify(content)))
        fail("The document can't be saved.", 30486);
      state.path = path;
      state.modified = false;
      say({ saved: state.path });
      return document;
    },
    close: function (saving) {
      if (saving !== globals.SaveOptions.NO) expectQuiet("close");
      drop(openDocuments, document);
      say({ closed: state.name });
    },
    exportFile: function (format, to, showingOptions, using) {
      exportPdf(format, to, showingOptions, using, choosePages(document, app.pdfExportPreferences.pageRange));
    },
    packageForPrint: function (to) {
      return packageFiles(to, [state], Array.prototype.slice.call(arguments, 1));
    }
  });
  state.pages = listOf("Pages", content.pages, function (name, i) { return { name: name, documentOffset: i }; });
  state.fonts = listOf("Fonts", content.fonts, function (font) {
    return { name: font[0], status: globals.FontStatus[font[1]] };
  });
  state.links = listOf("Links", content.links, function (path) {
    return { name: path.replace(/.*\//, ""), status: globals.LinkStatus[native.exists(path) === 1 ? "NORMAL" : "LINK_MISSING"] };
  });
  if (isShown) openDocuments.unshift(document);
  else openDocuments.push(document);
  return document;
}

function makeBook(path) {
  var content = JSON.parse(native.read(path));
  var state = { path: path, name: path.replace(/.*\//, ""), modified: content.modified === true, saved: true };
  function documents() {
    var made = [];
    for (var i = 0; i < content.documents.length; i++)
      made.push({ name: content.documents[i].replace(/.*\//, ""), content: JSON.parse(native.read(content.documents[i])) });
    return made;
  }
  var book = make("Book", state, {
    get_fullName: function () { return new globals.File(path); },
    save: function () { state.modified = false; say({ saved: path }); },
    exportFile: function (format, to, showingOptions, using) {
      var pages = [];
      var all = documents();
      for (var i = 0; i < all.length; i++) pages = pages.concat(all[i].content.pages);
      exportPdf(format, to, showingOptions, using, pages);
    },
    packageForPrint: function (to) {
      return packageFiles(to, documents(), Array.prototype.slice.call(arguments, 1));
    }
  });
  state.bookContents = listOf("BookContents", content.documents, function (file) {
    return { name: file.replace(/.*\//, ""), fullName: new globals.File(file) };
  });
  openBooks.unshift(book);
}

// --- The application ---

function makePreset(values) {
  var set = {};
  var state = { set: set };
  var behaviour = { remove: function () { drop(presets, preset); } };
  for (var name in classes.PDFExportPreset.properties) {
    behaviour["set_" + name] = (function (one) { return function (value) { set[one] = value; }; })(name);
  }
  var preset = make("PDFExportPreset", state, behaviour);
  state.name = values.name;
  for (var i = 0; i < presets.length; i++) if (presets[i].state$.name === values.name) fail("The name is taken.");
  presets.push(preset);
  return preset;
}

function makeMenu(className, name, submenus) {
  var items = [];
  return make(className, {
    name: name,
    submenus: collect("Submenus", submenus),
    menuItems: collect("MenuItems", items, function (action, at) {
      if (!(action instanceof globals.ScriptMenuAction) || at.enumeration !== "LocationOptions") fail("Invalid parameter");
      var item = make("MenuItem", { associatedMenuAction: action }, {});
      items.push(item);
      return item;
    })
  }, {});
}

var presets = [];
var idleTasks = [];
var actions = [];
var fileMenu = makeMenu("Submenu", "$ID/&File", []);
var menus = [makeMenu("Menu", "$ID/Main", [fileMenu]), makeMenu("Menu", "$ID/BookPanelPopup", [])];

function makeApplication() {
  var isQuiet = globals.UserInteractionLevels.INTERACT_WITH_ALL;
  return make("Application", {
    documents: collect("Documents", openDocuments),
    books: collect("Books", openBooks),
    menus: collect("Menus", menus),
    pdfExportPresets: collect("PDFExportPresets", presets, makePreset),
    pdfExportPreferences: make("PDFExportPreference", { pageRange: globals.PageRange.ALL_PAGES, viewPDF: true }, {}),
    scriptPreferences: make("ScriptPreference", { userInteractionLevel: isQuiet }, {}),
    viewPreferences: make("ViewPreference", { horizontalMeasurementUnits: globals.MeasurementUnits.MILLIMETERS }, {}),
    scriptMenuActions: collect("ScriptMenuActions", actions, function (title, values) {
      var state = { title: title, enabled: true };
      var action = make("ScriptMenuAction", state, {});
      actions.push(action);
      return action;
    }),
    idleTasks: collect("IdleTasks", idleTasks, function (values) {
      var state = { sleep: values.sleep, name: values.name, due: native.now() + values.sleep };
      var task = make("IdleTask", state, { remove: function () { drop(idleTasks, task); } });
      idleTasks.push(task);
      return task;
    })
  }, {
    get_activeDocument: function () {
      for (var i = 0; i < openDocuments.length; i++) if (openDocuments[i].state$.visible) return openDocuments[i];
      fail("No documents are open.", 30661);
    },
    get_activeBook: function () {
      if (openBooks.length === 0) fail("No books are open.", 30661);
      return openBooks[0];
    },
    open: function (file, isShown) {
      expectQuiet("open");
      return makeDocument(file.fsName, isShown !== false);
    }
  });
}

var app = makeApplication();
globals.app = app;
globals.alert = function (text) { say({ alert: text }); };
globals.$ = { fileName: setting.script };

function runIdleTasks() {
  var due = idleTasks.slice();
  for (var i = 0; i < due.length; i++) {
    if (!due[i].isValid || due[i].state$.due > native.now()) continue;
    send(due[i], "onIdle");
    if (due[i].isValid) due[i].state$.due = native.now() + due[i].state$.sleep;
  }
}

// The user opens a menu and chooses the script's entry.
function choose(menu, isChosen) {
  var item = menu.menuItems.item(0);
  if (!item.isValid) return say({ state: null });
  var action = item.associatedMenuAction;
  send(action, "beforeDisplay");
  say({ state: { enabled: action.enabled, title: action.title } });
  if (isChosen && action.enabled) send(action, "onInvoke");
}

// What is left in the application: presets, preferences, open documents and idle tasks.
function report() {
  say({
    presets: presets.length,
    quiet: app.scriptPreferences.userInteractionLevel.item !== "INTERACT_WITH_ALL",
    range: app.pdfExportPreferences.pageRange.item,
    view: app.pdfExportPreferences.viewPDF,
    documents: openDocuments.length,
    idle: idleTasks.length,
    answers: answers
  });
}

function obey(command) {
  var path = command.path;
  switch (command["do"]) {
    case "open": makeDocument(path, true); break;
    case "new": setting.saveAs = path || setting.saveAs; makeDocument(null, true); break;
    case "close": while (openDocuments.length > 0) drop(openDocuments, openDocuments[0]); openBooks.length = 0; break;
    case "cancel": setting.cancelledNext = true; break;
    case "change": app.activeDocument.state$.modified = true; break;
    case "book": makeBook(path); break;
    case "look": choose(command.menu === "book" ? menus[1] : fileMenu, false); break;
    case "choose": choose(command.menu === "book" ? menus[1] : fileMenu, true); break;
    case "break": setting.nth = command.nth; setting.how = command.how; answers = 0; break;
    case "report": report(); break;
    case "quit": send(app, "beforeQuit"); native.exit(0);
  }
}

function runApplication() {
  for (;;) {
    var line = native.command(5);
    if (line === null) native.exit(0);
    if (line !== "") obey(JSON.parse(line));
    runIdleTasks();
  }
}

// The script finds the application's names, and nothing of this file's.
function runScript(text) {
  var names = [];
  var values = [];
  for (var name in globals) {
    names.push(name);
    values.push(globals[name]);
  }
  new Function(names.join(","), text).apply({}, values);
}

runScript(native.read(setting.script));
runApplication();
