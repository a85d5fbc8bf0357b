// Runs queries from a browser: rows of keys and XPath expressions, and a table of the answers.
#include <cgilib.h>

#include <string>

#include "page.h"

namespace
{

constexpr const char* const ROW_STYLE = R"css(
.row { display: grid; grid-template-columns: 1fr 2.2fr auto; gap: .75rem; align-items: end;
  margin-bottom: .75rem; }
.row input[name=expression] { font-family: ui-monospace, "DejaVu Sans Mono", monospace; }
.row:only-child input[type=button] { visibility: hidden; }
td.empty::after { content: "empty"; color: #52606f; font-style: italic; }
td.fault::after { content: "not XPath 1.0"; color: #86170e; }
@media (min-width: 40rem) {
  .row + .row span { position: absolute; left: -999rem; }
}
@media (max-width: 39.9rem) {
  .row { grid-template-columns: 1fr auto; gap: .4rem .6rem; padding-bottom: .9rem;
    border-bottom: 1px solid #e4e9ee; }
  .row label:nth-child(2) { grid-area: 2 / 1 / 3 / 3; }
  .answers td::before { content: attr(data-label) ": "; color: #52606f; }
}
)css";

// The script of the query page. Nothing in the handler's answer becomes markup: it enters the page
// only as text.
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

std::string Row(const cCGI& a_c_page, const std::string& a_s_key, const std::string& a_s_expression)
{
    // The handler's answer repeats keys unescaped, so these two characters would break it.
    const cCGI::tAttributes l_m_key = {{"name", "key"},
                                       {"pattern", R"([^&quot;\\]+)"},
                                       {"required", "required"},
                                       {"title", "no quotation mark and no backslash"}};
    const cCGI::tAttributes l_m_expression = {
        {"name", "expression"}, {"required", "required"}, {"spellcheck", "false"}};
    return a_c_page.Div(
        {{"class", "row"}},
        "<label><span>Key</span> " + a_c_page.Text(l_m_key, a_s_key) + "</label>\n" +
            "<label><span>XPath expression</span> " +
            a_c_page.Text(l_m_expression, a_s_expression) + "</label>\n" +
            a_c_page.Button({{"aria-label", "Remove this row"}, {"name", "remove"}}, "Remove"));
}

void ShowForm(cCGI& a_c_page)
{
    const std::string l_s_rows =
        Row(a_c_page, "hostname", "system/hostname/text()") +
        Row(a_c_page, "snmp port", "//service[@name='snmp']/@port") +
        Row(a_c_page, "spare uplink", "//interface[@type='lte']/comment()") +
        Row(a_c_page, "third server", "dns/server[3]") +
        Row(a_c_page, "name server", "dns/server[@priority=1]");
    a_c_page.BeginForm({{"action", "query"}, {"id", "query"}, {"method", "post"}});
    a_c_page.DispText(a_c_page.Div({{"id", "rows"}}, l_s_rows));
    a_c_page.DispText(
        a_c_page.Div({{"class", "actions"}}, a_c_page.Submit({{"class", "main"}}, "Ask") +
                                                 a_c_page.Button({{"id", "add"}}, "Add a row")));
    a_c_page.EndForm();
}

void ShowAnswers(const cCGI& a_c_page)
{
    const std::string l_s_head = a_c_page.Tr({}, "<th scope=\"col\">Key</th>\n"
                                                 "<th scope=\"col\">Expression</th>\n"
                                                 "<th scope=\"col\">Answer</th>\n");
    const std::string l_s_table =
        a_c_page.Table({{"class", "answers stacked"}, {"hidden", "hidden"}, {"id", "answers"}},
                       "<thead>\n" + l_s_head + "</thead>\n<tbody></tbody>\n");
    a_c_page.DispText(a_c_page.Div(
        {{"class", "panel"}},
        a_c_page.DecorateText(cCGI::eDISPLAY_H2, "Answers") +
            "<p id=\"state\" role=\"status\">Nothing asked yet.</p>\n" + l_s_table +
            "<p class=\"hint\">An element is shown as XML text. The handler writes every quotation "
            "mark in it as <code>&amp;quot;</code> and the table shows the quotation marks. "
            "<em>empty</em>: the expression selects no node or an empty text, or its result is a "
            "number, a boolean or a string.</p>\n"
            "<details><summary>The answer as it came</summary><pre id=\"raw\"></pre></details>\n"));
}

} // namespace

int main()
{
    cCGI l_c_page(cCGI::eXHTML_1_0_STRICT);
    BeginPage(l_c_page, "Configuration queries", ROW_STYLE);
    l_c_page.DispLine(l_c_page.DecorateText(cCGI::eDISPLAY_H1, "Configuration queries"));
    l_c_page.DispLine("<p>Each expression is evaluated from the root element of the configuration; "
                      "the first node that it selects gives the answer.</p>");
    l_c_page.DispLine("<noscript><p class=\"failed\">This page needs JavaScript.</p></noscript>");
    ShowForm(l_c_page);
    ShowAnswers(l_c_page);
    l_c_page.DispText(l_c_page.Script({}, QUERY_SCRIPT));
    l_c_page.EndHtml();
    return 0;
}
