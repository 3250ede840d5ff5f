// How the report looks: on light and dark screens of any width, and on A4 paper, in black and white as well.
#include "survey/reports.h"

namespace tool {

const std::string_view kReportStyle = R"(
:root {
  --paper: #ffffff; --ink: #1d2127; --soft: #565f6c; --line: #c5cbd3; --band: #f1f3f6; --link: #1a56a8;
  --pass: #17663f; --marginal: #7a5200; --fail: #a82a00;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --paper: #16191d; --ink: #e6e9ed; --soft: #a7b0bc; --line: #444c57; --band: #21262c; --link: #8ab8f5;
    --pass: #6fce9c; --marginal: #e8bb5c; --fail: #ff9470;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0 auto; padding: 1.5rem 1rem 3rem; max-width: 60rem; background-color: var(--paper); color: var(--ink);
  font: 15px/1.45 "Liberation Sans", Arial, "DejaVu Sans", sans-serif; overflow-wrap: anywhere;
}
h1 { margin: 0 0 .6rem; font-size: 1.7rem; line-height: 1.2; }
h2 { margin: 2.2rem 0 .6rem; padding-top: .6rem; border-top: 2px solid var(--ink); font-size: 1.3rem; }
h3 { margin: 1.5rem 0 .5rem; font-size: 1.08rem; }
p { margin: .5rem 0; }
a { color: var(--link); }
.soft, .lead { color: var(--soft); }
.result { display: table; width: 100%; margin: 0 0 1.2rem; padding: .7rem 1rem; border: 2px solid; }
.result p { margin: .15rem 0; color: var(--ink); }
.result .word { color: inherit; font-size: 1.5rem; font-weight: bold; }
.scroll { overflow-x: auto; margin: .6rem 0 1rem; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
caption { padding: .2rem 0 .4rem; text-align: left; font-weight: bold; }
th, td { padding: .28rem .5rem; border-bottom: 1px solid var(--line); text-align: left; vertical-align: top; }
thead th { border-bottom: 2px solid var(--ink); vertical-align: bottom; }
.values th, .values td { overflow-wrap: normal; white-space: nowrap; }
.values tbody th { min-width: 5rem; overflow-wrap: anywhere; white-space: normal; }
.values .why { min-width: 11rem; white-space: normal; }
.facts { margin-bottom: 1rem; }
.facts th { width: 13rem; color: var(--soft); font-weight: normal; }
.n { text-align: right !important; }
.pass { color: var(--pass); }
.marginal { color: var(--marginal); }
.fail { color: var(--fail); }
.tag { padding: 0 .45em; border: 1.5px solid; border-radius: .25em; font-weight: bold; }
.tag.marginal, .result.marginal { border-style: dashed; }
.tag.fail { background-color: var(--fail); border-color: var(--fail); color: var(--paper); }
.result.fail { border-width: 4px; }
.miss { font-weight: bold; }
.miss.fail { text-decoration: underline; }
.unseen { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); white-space: nowrap; }
figure { margin: .8rem 0 1rem; }
figcaption { color: var(--soft); }
.card { overflow-x: auto; border: 1px solid var(--line); background: #ffffff; }
.card > svg { display: block; width: 100%; min-width: 34rem; max-width: 46rem; height: auto; margin: 0 auto; }
.card.square > svg { max-width: 32rem; min-width: 20rem; }
.page { display: none; }
@media (max-width: 40rem) {
  body { padding: 1rem .75rem 2rem; }
  .facts th { width: 8rem; }
}
@page {
  size: A4; margin: 16mm 15mm 18mm;
  @bottom-left { color: #565f6c; font: 8pt Arial, "DejaVu Sans", sans-serif; }
  @bottom-right { content: "Page " counter(page) " of " counter(pages); color: #565f6c; font: 8pt Arial, "DejaVu Sans", sans-serif; }
}
@media print {
  body { max-width: none; padding: 0; font-size: 9.5pt; }
  h2, h3, caption, thead, .lead { break-after: avoid; }
  tr, figure, .result, .keep { break-inside: avoid; }
  .scroll, .card { overflow: visible; }
  .values th, .values td { padding: .18rem .35rem; white-space: normal; }
  .values td.n, .values td.why { white-space: nowrap; }
  .card > svg { min-width: 0; max-width: 150mm; }
  .card.square > svg { min-width: 0; max-width: 105mm; }
  a { color: inherit; text-decoration: none; }
  .page { display: table-cell; }
  td.page a::after { content: target-counter(attr(href url), page); }
}
)";

} // namespace tool
