// Writes documents of one page without a library.

/** A page with these lines of plain text (no brackets, no backslashes). */
export function drawPdf(lines) {
  const text = lines.map((line) => `(${line}) Tj 0 -20 Td`).join(" ");
  const content = `BT /F1 14 Tf 60 760 Td ${text} ET`;
  const objects = [
    "<< /Type /Catalog /Pages 2 0 R >>",
    "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
    "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R /Resources << /Font << /F1 5 0 R >> >> >>",
    `<< /Length ${content.length} >>\nstream\n${content}\nendstream`,
    "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
  ];
  let document = "%PDF-1.4\n";
  const offsets = objects.map((object, i) => {
    const at = document.length;
    document += `${i + 1} 0 obj\n${object}\nendobj\n`;
    return at;
  });
  const table = offsets.map((at) => `${String(at).padStart(10, "0")} 00000 n \n`).join("");
  const count = objects.length + 1;
  const trailer = `trailer << /Size ${count} /Root 1 0 R >>\nstartxref\n${document.length}\n%%EOF\n`;
  return Buffer.from(`${document}xref\n0 ${count}\n0000000000 65535 f \n${table}${trailer}`, "latin1");
}
