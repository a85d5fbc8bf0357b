#ifndef QUERY_SCRIPT_H
#define QUERY_SCRIPT_H

/// The script of the query page. Nothing in the handler's answer becomes markup: it enters the page
/// only as text.
constexpr const char* const QUERY_SCRIPT = R"js(
const form = document.getElementById("query");
const rows = document.getElementById("rows");
const table = document.getElementById("answers");
const state = document.getElementById("state");
const raw = document.getElementById("raw");
let busy = false;

// Of several fields with one name the handler takes the first.
function readFields() {
  const fields = new Map();
  for (const row of rows.children) {
    const [key, expression] = row.querySelectorAll("input");
    if (!fields.has(key.value)) fields.set(key.value, expression.value);
  }
  return fields;
}

function addCell(row, label, text) {
  const cell = row.insertCell();
  cell.dataset.label = label;
  cell.textContent = text;
  cell.classList.toggle("empty", text === "");
}

// An element comes as XML text with &quot; for every quotation mark.
function readable(value) {
  return value.startsWith("<") ? value.replaceAll("&quot;", '"') : value;
}

// Whether it is XPath 1.0. The handler answers one that is not like one that selects nothing.
function parses(expression) {
  try {
    return Boolean(document.createExpression(expression, () => "urn:any"));
  } catch {
    return false;
  }
}

function showAnswers(fields, data) {
  for (const [key, expression] of fields) {
    const row = table.tBodies[0].insertRow();
    addCell(row, "Key", key);
    addCell(row, "Expression", expression);
    addCell(row, "Answer", readable(data[key]));
    if (data[key] === "" && !parses(expression)) row.lastElementChild.className = "empty fault";
  }
  table.hidden = false;
}

function showState(text, failed) {
  state.textContent = text;
  state.classList.toggle("failed", failed);
}

async function ask(fields) {
  const response = await fetch("query", { method: "POST", body: new URLSearchParams([...fields]) });
  raw.textContent = await response.text();
  if (!response.ok) throw new Error(`HTTP ${response.status} ${response.statusText}`);
  const answer = JSON.parse(raw.textContent);
  if (answer.error) throw new Error("the configuration is not well-formed XML.");
  return answer.data;
}

form.addEventListener("submit", async (event) => {
  event.preventDefault();
  if (busy) return;
  busy = true;
  const fields = readFields();
  table.hidden = true;
  table.tBodies[0].replaceChildren();
  raw.textContent = "";
  showState("Asking …", false);
  try {
    showAnswers(fields, await ask(fields));
    showState(`Answered: ${fields.size}`, false);
  } catch (error) {
    showState("No answer: " + error.message, true);
  }
  busy = false;
});

document.getElementById("add").addEventListener("click", () => {
  const row = rows.lastElementChild.cloneNode(true);
  for (const input of row.querySelectorAll("input[type=text]")) input.value = "";
  rows.append(row);
  row.querySelector("input").focus();
});

rows.addEventListener("click", (event) => {
  if (event.target.name === "remove") event.target.closest(".row").remove();
});
)js";

#endif
